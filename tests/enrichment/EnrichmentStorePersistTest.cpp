#include "enrichment/EnrichmentStoreFixture.h"

namespace vesko::testing {
namespace {

TEST_F(EnrichmentStoreTest, APersistWritesAfterTheDebounce) {
    store.apply({{{"a"}, entryOf(EnrichmentSource::model, "A", pipeline)}});
    store.schedulePersist();
    pass(799ms);
    EXPECT_FALSE(fileExists(file));
    pass(1ms);
    EXPECT_EQ(inFile(), store.entries());
}

TEST_F(EnrichmentStoreTest, TheSnapshotIsThatOfTheCall) {
    store.apply({{{"a"}, entryOf(EnrichmentSource::model, "A", pipeline)}});
    const EnrichmentEntries then = store.entries();
    store.schedulePersist();
    store.apply({{{"b"}, entryOf(EnrichmentSource::model, "B", pipeline)}});
    pass(1s);
    EXPECT_EQ(inFile(), then);
}

TEST_F(EnrichmentStoreTest, OfTwoPersistsTheSecondAloneIsWritten) {
    store.apply({{{"a"}, entryOf(EnrichmentSource::model, "A", pipeline)}});
    store.schedulePersist();
    pass(100ms);
    store.apply({{{"b"}, entryOf(EnrichmentSource::model, "B", pipeline)}});
    store.schedulePersist();
    loop.advance(10s);
    EXPECT_EQ(workers.held.size(), 1u);
    EXPECT_FALSE(fileExists(file));
    workers.run();
    loop.drain();
    EXPECT_EQ(inFile(), store.entries());
    EXPECT_EQ(inFile().size(), 2u);
}

TEST_F(EnrichmentStoreTest, APersistAfterAWriteWritesAgain) {
    store.schedulePersist();
    pass(1s);
    EXPECT_TRUE(inFile().empty());
    store.apply({{{"a"}, entryOf(EnrichmentSource::model, "A", pipeline)}});
    store.schedulePersist();
    pass(1s);
    EXPECT_EQ(inFile().size(), 1u);
}

TEST_F(EnrichmentStoreTest, APersistThatAlreadyWaitsForAWorkerGivesWayToo) {
    store.apply({{{"a"}, entryOf(EnrichmentSource::model, "A", pipeline)}});
    store.schedulePersist();
    loop.advance(1s); // the write waits for its worker
    ASSERT_EQ(workers.held.size(), 1u);
    store.apply({{{"b"}, entryOf(EnrichmentSource::model, "B", pipeline)}});
    store.schedulePersist();
    workers.run();
    EXPECT_FALSE(fileExists(file));
    pass(1s);
    EXPECT_EQ(inFile().size(), 2u);
}

TEST_F(EnrichmentStoreTest, AFailedWriteLeavesTheOldFileAndIsSilent) {
    tree.file("blocked", "kept");
    EnrichmentStore blocked(tree.url("blocked/x.json"), pipeline, context, dates);
    blocked.schedulePersist();
    pass(1s);
    EXPECT_EQ(bytesOf(tree.url("blocked")), "kept");
}

TEST_F(EnrichmentStoreTest, AStoreMayGoWhileItsWriteWaits) {
    {
        EnrichmentStore brief(file, pipeline, context, dates);
        brief.apply({{{"a"}, entryOf(EnrichmentSource::model, "A", pipeline)}});
        brief.schedulePersist();
    }
    pass(1s);
    EXPECT_EQ(inFile().size(), 1u);
}

TEST_F(EnrichmentStoreTest, ClearingDropsTheTableAndTheFile) {
    put({{{"a"}, entryOf(EnrichmentSource::heuristic, "A")}});
    store.load();
    changes = 0;
    store.clear();
    EXPECT_TRUE(store.entries().empty());
    EXPECT_EQ(changes, 1);
    EXPECT_FALSE(fileExists(file));
    store.clear();
}

TEST_F(EnrichmentStoreTest, ClearingDropsAPendingWrite) {
    put({{{"a"}, entryOf(EnrichmentSource::heuristic, "A")}});
    store.load();
    store.schedulePersist();
    pass(400ms);
    store.clear();
    pass(10s);
    EXPECT_FALSE(fileExists(file));
    EXPECT_EQ(loop.timers(), 0u);
}

TEST_F(EnrichmentStoreTest, ClearingDropsAWriteThatWaitsForAWorker) {
    store.schedulePersist();
    loop.advance(1s);
    ASSERT_EQ(workers.held.size(), 1u);
    store.clear();
    workers.run();
    loop.drain();
    EXPECT_FALSE(fileExists(file));
}

TEST_F(EnrichmentStoreTest, ClearingDuringWritesLeavesNoFile) {
    WorkerPool pool;
    TaskContext threads = context;
    threads.workers = &pool;
    EnrichmentEntries many;
    for (int index = 0; index < 2'000; ++index)
        many[{"url:/" + std::to_string(index)}] = entryOf(EnrichmentSource::heuristic, "name");
    TaskRegistry registry;
    threads.registry = &registry;
    EnrichmentStore brief(file, pipeline, threads, dates);
    for (int count = 0; count < 30; ++count) {
        brief.apply(many);
        brief.schedulePersist();
        loop.advance(800ms); // the write runs on its thread now
        std::this_thread::sleep_for(std::chrono::microseconds(count * 100));
        brief.clear();
        ASSERT_TRUE(loop.waitFor([&] { return registry.empty(); }));
        ASSERT_FALSE(fileExists(file)) << count;
    }
}

TEST_F(EnrichmentStoreTest, TheHookClears) {
    put({{{"a"}, entryOf(EnrichmentSource::heuristic, "A")}});
    store.load();
    {
        const auto hook = subscribeToNotification(enrichmentCacheShouldClear, [this] { store.clear(); });
        postNotification("SomethingElse");
        EXPECT_FALSE(store.entries().empty());
        postNotification("VeskoEnrichmentCacheShouldClear");
        EXPECT_TRUE(store.entries().empty());
        EXPECT_FALSE(fileExists(file));
    }
    store.apply({{{"a"}, entryOf(EnrichmentSource::model, "A")}});
    postNotification(enrichmentCacheShouldClear);
    EXPECT_EQ(store.entries().size(), 1u);
}

} // namespace
} // namespace vesko::testing
