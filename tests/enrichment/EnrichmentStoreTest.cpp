#include "enrichment/EnrichmentStore.h"
#include "base/FileSystem.h"
#include "concurrency/WorkerPool.h"
#include "enrichment/EnrichmentCacheFile.h"
#include "enrichment/EnrichmentCacheHook.h"
#include "support/LanguageScope.h"
#include "support/ManualLoop.h"
#include "support/ScanCacheSamples.h"
#include "support/TempTree.h"
#include <gtest/gtest.h>

namespace vesko {
namespace {

using namespace std::chrono_literals;
using testing::bytesOf;
using testing::LanguageScope;
using testing::sampleItem;
using testing::TempTree;

const std::string pipeline = "afm-2026-06-i18n";

class SetDates : public DateSource {
public:
    Date now() const override { return date; }
    Date date = dateFromUnixSeconds(1'795'256'100);
};

/// Runs each closure inside post's caller's next turn, so that a test decides when a write happens.
class HeldWorkers : public Executor {
public:
    void post(std::function<void()> closure) override { held.push_back(std::move(closure)); }
    void run() {
        for (auto& closure : std::exchange(held, {})) closure();
    }
    std::vector<std::function<void()>> held;
};

Enrichment entryOf(EnrichmentSource source, std::string name,
                   std::optional<std::string> version = std::nullopt) {
    Enrichment entry;
    entry.friendlyName = std::move(name);
    entry.reason = "Motivo";
    entry.source = source;
    entry.modelVersion = std::move(version);
    entry.updatedAt = dateFromUnixSeconds(1'700'000'000, 250'000'000);
    return entry;
}

CleanupGroup groupOf(std::string id, std::vector<ScannableItem> items) {
    CleanupGroup group;
    group.id = std::move(id);
    group.title = "Group's title";
    group.baselineSafety = Safety::seguro;
    group.baselineReason = "Group's reason";
    group.items = ItemList(std::move(items));
    return group;
}

class EnrichmentStoreTest : public ::testing::Test {
protected:
    ~EnrichmentStoreTest() override { loop.drain(); }

    const LanguageScope english{Language::english};
    const TempTree tree;
    const FileURL file = tree.url("Vesko/enrichment-cache.json");
    ManualLoop loop;
    HeldWorkers workers;
    SetDates dates;
    const TaskContext context{
        .home = &loop, .workers = &workers, .clock = &loop, .stop = {}, .registry = nullptr};
    EnrichmentStore store{file, pipeline, context, dates};
    int changes = 0;
    const ChangeSource::Subscription subscription = store.changes().subscribe([this] { ++changes; });

    void pass(Duration duration) {
        loop.advance(duration);
        workers.run();
        loop.drain();
    }
    EnrichmentEntries inFile() const {
        const std::string bytes = bytesOf(file);
        return EnrichmentCacheFile::decode(bytes, currentLocaleIdentifier(), pipeline);
    }
    void put(const EnrichmentEntries& entries) {
        tree.file("Vesko/enrichment-cache.json",
                  EnrichmentCacheFile::encode(entries, currentLocaleIdentifier()));
    }
    void loadText(std::string_view bytes) {
        tree.file("Vesko/enrichment-cache.json", bytes);
        store.load();
    }
    std::string nameSeededFor(const CleanupGroup& group) {
        store.seedHeuristics({group});
        const auto entry = store.lookup(group.items[0].enrichmentKey);
        return entry ? entry->friendlyName : "none";
    }
};

// The file.

TEST_F(EnrichmentStoreTest, TheFileLiesInTheApplicationSupportFolder) {
    EXPECT_EQ(EnrichmentStore::defaultFileURL().lastPathComponent(), "enrichment-cache.json");
    EXPECT_EQ(EnrichmentStore::defaultFileURL().parent().lastPathComponent(), "Vesko");
}

TEST_F(EnrichmentStoreTest, TheDocumentIsAsAgreed) {
    Enrichment entry = entryOf(EnrichmentSource::model, "Nome", pipeline);
    entry.kind = "cache";
    EXPECT_EQ(
        EnrichmentCacheFile::encode({{{"url:/a"}, entry}}, "pt-BR"),
        R"({"schemaVersion":2,"localeIdentifier":"pt-BR","entries":[{"key":"url:/a","enrichment":)"
        R"({"friendlyName":"Nome","safety":"revisar","reason":"Motivo","kind":"cache","source":"model",)"
        R"("modelVersion":"afm-2026-06-i18n","updatedAt":721692800.25}}]})");
    entry = entryOf(EnrichmentSource::heuristic, "Nome");
    entry.updatedAt = dateFromUnixSeconds(1'700'000'000);
    EXPECT_EQ(EnrichmentCacheFile::encode({{{"url:/a"}, entry}}, "en"),
              R"({"schemaVersion":2,"localeIdentifier":"en","entries":[{"key":"url:/a","enrichment":)"
              R"({"friendlyName":"Nome","safety":"revisar","reason":"Motivo","source":"heuristic",)"
              R"("updatedAt":721692800}}]})");
    EXPECT_EQ(EnrichmentCacheFile::encode({}, "en"),
              R"({"schemaVersion":2,"localeIdentifier":"en","entries":[]})");
}

TEST_F(EnrichmentStoreTest, AFileOfSchemaOneLoadsAsEmptyAndStays) {
    const std::string bytes = R"({"schemaVersion":1,"localeIdentifier":"en","entries":[]})";
    store.apply({{{"a"}, entryOf(EnrichmentSource::model, "A")}});
    loadText(bytes);
    EXPECT_TRUE(store.entries().empty());
    EXPECT_EQ(bytesOf(file), bytes);
    store.schedulePersist();
    pass(800ms);
    EXPECT_NE(bytesOf(file), bytes);
}

TEST_F(EnrichmentStoreTest, AFileWithoutALanguageLoadsAsEmptyAndStays) {
    for (const char* locale : {"", "\"localeIdentifier\":null,"}) {
        const std::string bytes =
            std::string("{\"schemaVersion\":2,") + locale +
            R"("entries":[{"key":"a","enrichment":{"friendlyName":"A","safety":"risco",)"
            R"("reason":"","source":"heuristic","updatedAt":1}}]})";
        store.apply({{{"b"}, entryOf(EnrichmentSource::model, "B")}});
        loadText(bytes);
        EXPECT_TRUE(store.entries().empty());
        EXPECT_EQ(bytesOf(file), bytes);
    }
}

TEST_F(EnrichmentStoreTest, AFileOfTheOtherLanguageLoadsAsEmptyHeuristicEntriesIncluded) {
    put({{{"h"}, entryOf(EnrichmentSource::heuristic, "H")},
         {{"m"}, entryOf(EnrichmentSource::model, "M", pipeline)}});
    store.load();
    EXPECT_EQ(store.entries().size(), 2u);
    const LanguageScope portuguese(Language::portuguese);
    store.load();
    EXPECT_TRUE(store.entries().empty());
}

TEST_F(EnrichmentStoreTest, OnlyTheModelsEntriesOfAnotherPipelineAreDropped) {
    const EnrichmentEntries kept{{{"h"}, entryOf(EnrichmentSource::heuristic, "H")},
                                 {{"h2"}, entryOf(EnrichmentSource::heuristic, "H2", "afm-2025")},
                                 {{"m"}, entryOf(EnrichmentSource::model, "M", pipeline)}};
    EnrichmentEntries all = kept;
    all[{"none"}] = entryOf(EnrichmentSource::model, "none");
    all[{"older"}] = entryOf(EnrichmentSource::model, "older", "afm-2025");
    all[{"empty"}] = entryOf(EnrichmentSource::model, "empty", "");
    put(all);
    store.load();
    EXPECT_EQ(store.entries(), kept);
}

TEST_F(EnrichmentStoreTest, OfSeveralEntriesWithOneKeyTheLastCounts) {
    const auto entry = [](const char* name) {
        return R"({"key":"a","enrichment":{"friendlyName":")" + std::string(name) +
               R"(","safety":"seguro","reason":"r","source":"heuristic","updatedAt":0}})";
    };
    loadText(R"({"schemaVersion":2,"localeIdentifier":"en","entries":[)" + entry("first") + "," +
             entry("last") + "]}");
    ASSERT_EQ(store.entries().size(), 1u);
    EXPECT_EQ(store.lookup({"a"})->friendlyName, "last");
}

TEST_F(EnrichmentStoreTest, LoadingReplacesTheEntriesAsOneChange) {
    put({{{"a"}, entryOf(EnrichmentSource::heuristic, "A")},
         {{"b"}, entryOf(EnrichmentSource::heuristic, "B")}});
    store.apply({{{"c"}, entryOf(EnrichmentSource::model, "C")}});
    changes = 0;
    store.load();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(store.entries(), inFile());
    EXPECT_FALSE(store.lookup({"c"}));
    ASSERT_FALSE(removeFile(file));
    store.load();
    EXPECT_EQ(changes, 2);
    EXPECT_TRUE(store.entries().empty());
}

TEST_F(EnrichmentStoreTest, EveryRequiredKeyMustBeThereWithItsType) {
    Enrichment full = entryOf(EnrichmentSource::model, "A", pipeline);
    full.kind = "cache";
    const std::string valid = EnrichmentCacheFile::encode({{{"a"}, full}}, "en");
    loadText(valid);
    ASSERT_EQ(store.entries(), (EnrichmentEntries{{{"a"}, full}}));
    const std::pair<const char*, const char*> changesOf[] = {
        {"\"schemaVersion\":", "\"x\":"}, {"\"entries\":", "\"x\":"},
        {"\"key\":", "\"x\":"},           {"\"enrichment\":", "\"x\":"},
        {"\"friendlyName\":", "\"x\":"},  {"\"safety\":", "\"x\":"},
        {"\"reason\":", "\"x\":"},        {"\"source\":", "\"x\":"},
        {"\"updatedAt\":", "\"x\":"},     {"\"revisar\"", "\"unknown\""},
        {"\"model\"", "\"human\""},       {"\"cache\"", "5"},
        {"\"afm-2026-06-i18n\"", "5"},    {"721692800.25", "\"721692800.25\""},
        {"721692800.25", "1e300"},        {"\"localeIdentifier\":\"en\"", "\"localeIdentifier\":5"},
    };
    for (const auto& [text, replacement] : changesOf) {
        std::string bytes = valid;
        ASSERT_TRUE(bytes.contains(text)) << text;
        bytes.replace(bytes.find(text), std::string(text).size(), replacement);
        loadText(bytes);
        EXPECT_TRUE(store.entries().empty()) << text << " -> " << replacement;
    }
    std::string withoutKind = valid;
    withoutKind.replace(withoutKind.find("\"cache\""), 7, "null");
    loadText(withoutKind);
    full.kind.reset();
    EXPECT_EQ(store.entries(), (EnrichmentEntries{{{"a"}, full}}));
}

TEST_F(EnrichmentStoreTest, AnEntryThatIsNoUtf8IsLeftOutAlone) {
    const Enrichment fine = entryOf(EnrichmentSource::heuristic, "fine");
    EXPECT_EQ(EnrichmentCacheFile::decode(
                  EnrichmentCacheFile::encode({{{"url:/caf\xE9"}, fine},
                                               {{"fine"}, fine},
                                               {{"name"}, entryOf(EnrichmentSource::heuristic, "caf\xE9")}},
                                              "en"),
                  "en", pipeline),
              (EnrichmentEntries{{{"fine"}, fine}}));
}

TEST_F(EnrichmentStoreTest, APrefetchedLoadGivesWhatTheFileHolds) {
    put({{{"a"}, entryOf(EnrichmentSource::heuristic, "A")}});
    store.prefetch();
    store.load();
    EXPECT_EQ(store.entries(), inFile());
    store.prefetch();
    ASSERT_FALSE(removeFile(file));
    store.load();
    EXPECT_TRUE(store.entries().empty());
}

TEST_F(EnrichmentStoreTest, AReadingStartedBeforeTheStoreIsTakenOver) {
    put({{{"a"}, entryOf(EnrichmentSource::model, "A", pipeline)}});
    const auto started = EnrichmentStore::startReading(file, pipeline);
    store.adopt(started);
    store.load();
    EXPECT_EQ(store.entries(), inFile());
    EXPECT_FALSE(started->take());
    store.adopt(EnrichmentStore::startReading(file, "another pipeline"));
    store.load();
    EXPECT_EQ(store.entries(), inFile());
}

// Seeding.

TEST_F(EnrichmentStoreTest, AnItemIsSeededFromItsGroup) {
    store.seedHeuristics({groupOf("project.node", {sampleItem("/home/ana/shop/node_modules", 1)})});
    Enrichment expected;
    expected.friendlyName = "node_modules — shop";
    expected.safety = Safety::seguro;
    expected.reason = "Group's reason";
    expected.source = EnrichmentSource::heuristic;
    expected.updatedAt = dates.date;
    EXPECT_EQ(store.entries(), (EnrichmentEntries{{{"url:/home/ana/shop/node_modules"}, expected}}));
    EXPECT_EQ(changes, 1);
}

TEST_F(EnrichmentStoreTest, SeedingAgainChangesNothing) {
    const CleanupGroup group = groupOf("project.node", {sampleItem("/a", 1), sampleItem("/b", 1)});
    store.seedHeuristics({group});
    const EnrichmentEntries first = store.entries();
    dates.date += 1h;
    store.seedHeuristics({group});
    EXPECT_EQ(store.entries(), first);
    EXPECT_EQ(changes, 1);
}

TEST_F(EnrichmentStoreTest, SeedingLeavesEntriesOfEitherSource) {
    const EnrichmentEntries before{{{"url:/a"}, entryOf(EnrichmentSource::model, "A", pipeline)},
                                   {{"url:/b"}, entryOf(EnrichmentSource::heuristic, "B")}};
    store.apply(before);
    store.seedHeuristics({groupOf("x", {sampleItem("/a", 1), sampleItem("/b", 1)})});
    EXPECT_EQ(store.entries(), before);
}

TEST_F(EnrichmentStoreTest, OfTwoItemsWithOneKeyTheFirstIsSeeded) {
    CleanupGroup later = groupOf("y", {sampleItem("/a", 1)});
    later.baselineSafety = Safety::risco;
    store.seedHeuristics({groupOf("x", {sampleItem("/a", 1)}), later});
    EXPECT_EQ(store.lookup({"url:/a"})->safety, Safety::seguro);
}

TEST_F(EnrichmentStoreTest, TheOnlyItemOfACacheGroupIsNamedByTheGroup) {
    EXPECT_EQ(nameSeededFor(groupOf("cache.npm", {sampleItem("/home/ana/.npm/_cacache", 1)})),
              "Group's title");
}

TEST_F(EnrichmentStoreTest, AnItemOfSeveralInACacheGroupIsNamedByItsPlace) {
    EXPECT_EQ(
        nameSeededFor(groupOf("cache.npm", {sampleItem("/home/ana/.npm/_cacache", 1), sampleItem("/x", 1)})),
        "Group's title · ~/.npm");
    EXPECT_EQ(store.lookup({"url:/x"})->friendlyName, "Group's title");
}

TEST_F(EnrichmentStoreTest, AGroupThatIsNoCacheNamesByTheRules) {
    EXPECT_EQ(nameSeededFor(groupOf("cachet.x", {sampleItem("/a/com.example.tool", 1)})), "Tool");
}

// Applying.

TEST_F(EnrichmentStoreTest, TheModelKeepsTheSafetyThatWasSeeded) {
    store.seedHeuristics({groupOf("x", {sampleItem("/a", 1)})});
    changes = 0;
    Enrichment incoming = entryOf(EnrichmentSource::heuristic, "Better", pipeline);
    incoming.safety = Safety::revisar;
    incoming.kind = "cache";
    store.apply({{{"url:/a"}, incoming}});
    Enrichment expected = incoming;
    expected.safety = Safety::seguro;
    expected.source = EnrichmentSource::model;
    EXPECT_EQ(store.lookup({"url:/a"}), expected);
    EXPECT_EQ(changes, 1);
}

TEST_F(EnrichmentStoreTest, AnUnknownKeyTakesTheAnswerWhole) {
    Enrichment incoming = entryOf(EnrichmentSource::heuristic, "New");
    incoming.safety = Safety::risco;
    store.apply({{{"url:/new"}, incoming}});
    EXPECT_EQ(store.lookup({"url:/new"}), incoming);
}

TEST_F(EnrichmentStoreTest, ApplyingNothingIsNoChange) {
    store.apply({});
    EXPECT_EQ(changes, 0);
}

// Persisting.

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

// Clearing.

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

// Reading.

TEST_F(EnrichmentStoreTest, AKeyNeedsTheModelUntilTheModelAnswered) {
    store.apply(
        {{{"h"}, entryOf(EnrichmentSource::heuristic, "H")}, {{"m"}, entryOf(EnrichmentSource::model, "M")}});
    EXPECT_TRUE(store.needsModelEnrichment({"absent"}));
    EXPECT_TRUE(store.needsModelEnrichment({"h"}));
    EXPECT_FALSE(store.needsModelEnrichment({"m"}));
}

TEST_F(EnrichmentStoreTest, WithoutAGroupOrAnEntryOneShouldLookFirst) {
    ResolvedEnrichment expected;
    expected.friendlyName = "Tool";
    expected.safety = Safety::revisar;
    EXPECT_EQ(store.resolve(sampleItem("/a/com.example.tool", 1), nullptr, {}, {}), expected);
}

TEST_F(EnrichmentStoreTest, WithoutAnEntryTheGroupsBaselineHolds) {
    const CleanupGroup group = groupOf("x", {sampleItem("/a/shop/build", 1)});
    ResolvedEnrichment expected;
    expected.friendlyName = "build — shop";
    expected.safety = Safety::seguro;
    expected.reason = "Group's reason";
    EXPECT_EQ(store.resolve(group.items[0], &group, {}, {}), expected);
}

TEST_F(EnrichmentStoreTest, AnEntryReplacesTheBaseline) {
    const CleanupGroup group = groupOf("x", {sampleItem("/a", 1)});
    Enrichment entry = entryOf(EnrichmentSource::model, "Model's name");
    entry.safety = Safety::risco;
    entry.reason = "";
    store.apply({{{"url:/a"}, entry}});
    ResolvedEnrichment expected;
    expected.friendlyName = "Model's name";
    expected.safety = Safety::risco;
    expected.reason = "";
    expected.isAIRefined = true;
    EXPECT_EQ(store.resolve(group.items[0], &group, {{"url:/b"}}, {FileURL("/b")}), expected);
    expected.isAnalyzing = true;
    expected.isAIDiscovered = true;
    EXPECT_EQ(store.resolve(group.items[0], &group, {{"url:/a"}}, {FileURL("/a")}), expected);
    store.clear();
    store.apply({{{"url:/a"}, entryOf(EnrichmentSource::heuristic, "Seeded")}});
    EXPECT_FALSE(store.resolve(group.items[0], &group, {}, {}).isAIRefined);
}

} // namespace
} // namespace vesko
