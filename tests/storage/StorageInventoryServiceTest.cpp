#include "storage/StorageInventoryService.h"
#include "base/StringCatalog.h"
#include "concurrency/Concurrency.h"
#include "storage/ScriptedFolderSizes.h"
#include "support/ManualLoop.h"
#include <gmock/gmock.h>

namespace vesko {
namespace {

using Service = StorageInventoryService;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using testing::ScriptedFolderSizes;
using Bytes = std::vector<std::pair<std::string, std::int64_t>>;

Bytes figures(const std::vector<StorageCategoryBucket>& buckets) {
    Bytes list;
    for (const StorageCategoryBucket& bucket : buckets) list.emplace_back(bucket.id, bucket.bytes);
    return list;
}

/// The loop serves as the workers too, so that what is measured goes in a known order.
class StorageInventoryServiceTest : public ::testing::Test {
protected:
    StorageInventoryServiceTest() {
        context.home = &loop;
        context.workers = &loop;
        context.clock = &loop;
        context.registry = &registry;
        sizes->bytes = {{"/Applications", 7},     {"/home/u/Applications", 100}, {"/home/u/Documents", 20},
                        {"/home/u/Desktop", 3},   {"/home/u/Downloads", 5},      {"/home/u/Movies", 40},
                        {"/home/u/Library", 1000}};
    }
    ~StorageInventoryServiceTest() override {
        shutDown(registry, [this] { loop.drain(); });
    }

    /// Reads a whole run; stops reading after so many updates where a number is given.
    std::vector<StorageInventoryUpdate> run(std::int64_t used, std::size_t most = 100) {
        std::vector<StorageInventoryUpdate> updates;
        AsyncStream<StorageInventoryUpdate> stream = Service::measureStream(context, home, sizes, used);
        const auto reader = spawn(context, [&]() -> Task<void> {
            while (updates.size() < most) {
                std::optional<StorageInventoryUpdate> update = co_await stream.next();
                if (!update) co_return;
                updates.push_back(std::move(*update));
            }
        });
        loop.drain();
        EXPECT_TRUE(reader.done());
        return updates;
    }

    std::optional<StorageCategoryBucket> measured(const std::string& id) {
        const auto task = spawn(context, [&] { return Service::measureBucket(id, home, sizes); });
        std::optional<StorageCategoryBucket> bucket;
        const auto reader = spawn(context, [&]() -> Task<void> { bucket = co_await task.value(); });
        loop.drain();
        EXPECT_TRUE(reader.done());
        return bucket;
    }

    ManualLoop loop;
    TaskRegistry registry;
    TaskContext context;
    FileURL home{"/home/u"};
    std::shared_ptr<ScriptedFolderSizes> sizes = std::make_shared<ScriptedFolderSizes>();
};

TEST_F(StorageInventoryServiceTest, WhatIsMeasuredAboveTheUsedSpaceLeavesNothingForTheSystem) {
    const auto system = Service::systemBucket(50, {{"library", "", "", 60, {}, {}}});
    ASSERT_TRUE(system);
    EXPECT_EQ(*system, (StorageCategoryBucket{
                           "system", "home.storage.bucket.system", "internaldrive", 0, {}, std::nullopt}));
    EXPECT_EQ(
        Service::systemBucket(50, {{"library", "", "", 20, {}, {}}, {"media", "", "", 1, {}, {}}})->bytes,
        29);
    EXPECT_EQ(Service::systemBucket(-5, {})->bytes, 0);
}

TEST_F(StorageInventoryServiceTest, ARunThatIsCancelledTellsNoEnd) {
    std::vector<StorageInventoryUpdate> updates;
    AsyncStream<StorageInventoryUpdate> stream = Service::measureStream(context, home, sizes, 2000);
    TaskHandle<void> reader;
    reader = spawn(context, [&]() -> Task<void> {
        for (;;) {
            std::optional<StorageInventoryUpdate> update = co_await stream.next();
            if (!update) co_return;
            updates.push_back(std::move(*update));
            reader.cancel();
        }
    });
    loop.drain();
    EXPECT_TRUE(reader.done());
    ASSERT_EQ(updates.size(), 1u);
    EXPECT_TRUE(std::holds_alternative<BucketMeasured>(updates[0]));
    EXPECT_TRUE(registry.empty());
}

/// Cancelled by its reader, and by the program's end, which the reader is not told of here.
TEST_F(StorageInventoryServiceTest, ARunThatIsCancelledAtAnyMomentTellsNoEndAndNoHalfBucket) {
    TaskContext readers = context;
    readers.registry = nullptr;
    for (int attempt = 0; attempt < 18; ++attempt) {
        const bool byReader = attempt % 2 == 0;
        const int place = attempt / 2 + 1;
        std::vector<StorageInventoryUpdate> updates;
        AsyncStream<StorageInventoryUpdate> stream = Service::measureStream(context, home, sizes, 2000);
        TaskHandle<void> reader;
        sizes->onCall = [&, count = 0](const std::string&) mutable {
            if (++count != place) return;
            if (byReader)
                reader.cancel();
            else
                registry.cancelAll();
        };
        reader = spawn(readers, [&]() -> Task<void> {
            for (;;) {
                std::optional<StorageInventoryUpdate> update = co_await stream.next();
                if (!update) co_return;
                updates.push_back(std::move(*update));
            }
        });
        loop.drain();
        EXPECT_TRUE(reader.done()) << attempt;
        EXPECT_TRUE(registry.empty()) << attempt;
        EXPECT_LT(updates.size(), 4u) << attempt;
        for (const StorageInventoryUpdate& update : updates) {
            ASSERT_TRUE(std::holds_alternative<BucketMeasured>(update)) << attempt;
            const StorageCategoryBucket& bucket = std::get<BucketMeasured>(update).bucket;
            EXPECT_THAT(Bytes({{"library", 1000}, {"applications", 107}, {"documents", 28}, {"media", 40}}),
                        ::testing::Contains(Pair(bucket.id, bucket.bytes)))
                << attempt;
        }
    }
}

TEST_F(StorageInventoryServiceTest, ADroppedRunMeasuresNothingMore) {
    { const auto stream = Service::measureStream(context, home, sizes, 2000); }
    loop.drain();
    // Each bucket's first place was on its way; no second one follows.
    EXPECT_LE(sizes->calls().size(), 4u);
    EXPECT_TRUE(registry.empty());
}

TEST_F(StorageInventoryServiceTest, AllBucketsComeBeforeTheEndWhichListsThemInTheTablesOrder) {
    const std::vector<StorageInventoryUpdate> updates = run(2000);
    ASSERT_EQ(updates.size(), 5u);
    Bytes order;
    for (std::size_t i = 0; i < 4; ++i) {
        const StorageCategoryBucket& bucket = std::get<BucketMeasured>(updates[i]).bucket;
        order.emplace_back(bucket.id, bucket.bytes);
    }
    // Each bucket's places go one after the other, so the one with a single place is there first.
    EXPECT_THAT(order, ElementsAre(Pair("library", 1000), Pair("applications", 107), Pair("documents", 28),
                                   Pair("media", 40)));
    EXPECT_THAT(figures(std::get<InventoryFinished>(updates[4]).buckets),
                ElementsAre(Pair("applications", 107), Pair("documents", 28), Pair("media", 40),
                            Pair("library", 1000), Pair("system", 825)));
}

TEST_F(StorageInventoryServiceTest, APlaceOfABucketIsMeasuredAfterTheOneBefore) {
    measured("documents");
    EXPECT_THAT(sizes->calls(), ElementsAre("/home/u/Documents", "/home/u/Desktop", "/home/u/Downloads"));
}

TEST_F(StorageInventoryServiceTest, ABucketThatIsCancelledBetweenItsPlacesCountsNothing) {
    std::optional<StorageCategoryBucket> bucket;
    TaskHandle<void> reader;
    sizes->onCall = [&](const std::string&) { reader.cancel(); };
    reader = spawn(
        context, [&]() -> Task<void> { bucket = co_await Service::measureBucket("documents", home, sizes); });
    loop.drain();
    ASSERT_TRUE(bucket);
    EXPECT_EQ(bucket->bytes, 0);
    EXPECT_THAT(sizes->calls(), ElementsAre("/home/u/Documents"));
}

TEST_F(StorageInventoryServiceTest, TheRemainderAndUnknownBucketsAreNotMeasured) {
    EXPECT_FALSE(measured("system"));
    EXPECT_FALSE(measured("attic"));
    EXPECT_THAT(sizes->calls(), IsEmpty());
    EXPECT_EQ(measured("media")->bytes, 40);
}

TEST_F(StorageInventoryServiceTest, ApplicationsAreWatchedBelowHomeAndForEverybody) {
    EXPECT_THAT(Service::watchRoots(home),
                ElementsAre(Service::WatchRoot{"/home/u/Applications", "applications"},
                            Service::WatchRoot{"/Applications", "applications"},
                            Service::WatchRoot{"/home/u/Documents", "documents"},
                            Service::WatchRoot{"/home/u/Desktop", "documents"},
                            Service::WatchRoot{"/home/u/Downloads", "documents"},
                            Service::WatchRoot{"/home/u/Pictures", "media"},
                            Service::WatchRoot{"/home/u/Movies", "media"},
                            Service::WatchRoot{"/home/u/Music", "media"},
                            Service::WatchRoot{"/home/u/Library", "library"}));
}

TEST_F(StorageInventoryServiceTest, EmptyBucketsHaveTheirPathsAndNoBytes) {
    const std::vector<StorageCategoryBucket> buckets = Service::emptyMeasurableBuckets(home);
    EXPECT_THAT(figures(buckets), ElementsAre(Pair("applications", 0), Pair("documents", 0), Pair("media", 0),
                                              Pair("library", 0)));
    EXPECT_THAT(buckets[0].paths, ElementsAre("/home/u/Applications", "/Applications"));
    EXPECT_THAT(Service::measurableBucketIDs(), ElementsAre("applications", "documents", "media", "library"));
}

TEST_F(StorageInventoryServiceTest, EveryBucketHasATitle) {
    for (const auto& definition : Service::definitions())
        EXPECT_NE(localized(definition.titleKey), definition.titleKey);
}

} // namespace
} // namespace vesko
