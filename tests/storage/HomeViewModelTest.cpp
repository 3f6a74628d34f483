#include "storage/HomeViewModel.h"
#include "storage/HomeFixture.h"
#include <gmock/gmock.h>

namespace vesko::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::SizeIs;
using IDs = HomeViewModel::IDs;
using Bytes = BucketBytes;

class HomeViewModelTest : public HomeTest {};

// The first measurement.

TEST_F(HomeViewModelTest, PlaceholdersFillBucketByBucketAndTheFiguresAreKept) {
    makeScreen();
    std::vector<Bytes> seen;
    std::vector<IDs> pending;
    const auto watching =
        screen->dashboard->has_value() ? ChangeSource::Subscription() : screen->changes.subscribe([&] {
            if (seen.empty() || seen.back() != shown()) {
                seen.push_back(shown());
                pending.push_back(*screen->pendingBucketIDs);
            }
        });
    screen->refresh(model);
    EXPECT_TRUE(*screen->isLoadingInventory);
    loop.drain();
    ASSERT_GE(seen.size(), 4u);
    EXPECT_THAT(seen[1], ElementsAre(Pair("applications", 0), Pair("documents", 0), Pair("media", 0),
                                     Pair("library", 0), Pair("system", 600)));
    EXPECT_EQ(pending[1], (IDs{"applications", "documents", "library", "media"}));
    EXPECT_THAT(shown(), ElementsAre(Pair("applications", 0), Pair("documents", 25), Pair("media", 40),
                                     Pair("library", 100), Pair("system", 435)));
    EXPECT_FALSE(*screen->isLoadingInventory);
    EXPECT_THAT(*screen->pendingBucketIDs, IsEmpty());
    const auto kept = store->load();
    ASSERT_TRUE(kept);
    EXPECT_EQ(kept->volumeUsedBytes, 600);
    EXPECT_THAT(kept->buckets, SizeIs(4));
}

TEST_F(HomeViewModelTest, ALoadThatIsBegunAgainCancelsTheOneBefore) {
    makeScreen();
    screen->refresh(model);
    refresh();
    EXPECT_EQ(figure("library"), 100);
    EXPECT_EQ(std::ranges::count(sizes->calls(), tree.path("Library")), 1);
}

TEST_F(HomeViewModelTest, ADevelopmentHostStartsWithoutTheCache) {
    cache(60s);
    const ScopedEnvironment host("XCODE_RUNNING_FOR_PLAYGROUNDS", "1");
    makeScreen();
    screen->refresh(model);
    EXPECT_TRUE(*screen->isLoadingInventory);
}

// The cache.

TEST_F(HomeViewModelTest, AFreshCacheIsShownAndNothingIsMeasured) {
    cache(60s);
    makeScreen();
    refresh();
    loop.advance(40s);
    EXPECT_THAT(shown(), ElementsAre(Pair("documents", 1), Pair("media", 2), Pair("system", 597)));
    EXPECT_THAT(sizes->calls(), IsEmpty());
    EXPECT_FALSE(*screen->isLoadingInventory);
}

TEST_F(HomeViewModelTest, KeptFiguresShowBeforeAnythingIsAwaited) {
    cache(60s);
    makeScreen();
    screen->refresh(model);
    EXPECT_THAT(shown(), ElementsAre(Pair("documents", 1), Pair("media", 2), Pair("system", 597)));
    EXPECT_EQ(screen->volume->volumeName, "Disk");
}

TEST_F(HomeViewModelTest, ALoadThatShowedKeptFiguresDoesNotReadTheVolumeAgain) {
    cache(60s);
    makeScreen();
    refresh();
    EXPECT_EQ(volumes->readings, 1);
    // The next load shows nothing first, so it asks.
    refresh();
    EXPECT_EQ(volumes->readings, 2);
}

TEST_F(HomeViewModelTest, ACacheOfElevenMinutesWithoutAWatcherIsMeasuredAnewAfterASecond) {
    cache(11min);
    makeScreen();
    refresh();
    loop.advance(900ms);
    EXPECT_THAT(sizes->calls(), IsEmpty());
    EXPECT_EQ(figure("documents"), 1);
    loop.advance(200ms);
    EXPECT_EQ(figure("documents"), 25);
    EXPECT_EQ(figure("media"), 40);
}

TEST_F(HomeViewModelTest, WithAWatcherACacheOfElevenMinutesIsFresh) {
    cache(11min);
    makeScreen();
    watch();
    refresh();
    loop.advance(10s);
    EXPECT_THAT(sizes->calls(), IsEmpty());
}

TEST_F(HomeViewModelTest, ALoadWaitsForTheWatcherThatIsBeingOpened) {
    cache(11min);
    tree.folder("Documents");
    makeScreen();
    screen->startWatching();
    refresh();
    loop.advance(10s);
    EXPECT_THAT(sizes->calls(), IsEmpty());
}

TEST_F(HomeViewModelTest, SwitchedOffThereIsNoWatcherAndTheCacheLastsTenMinutes) {
    cache(11min);
    home.isBackgroundRefreshEnabled = [] { return false; };
    makeScreen();
    watch();
    EXPECT_THAT(streams.requests, IsEmpty());
    refresh();
    loop.advance(2s);
    EXPECT_THAT(sizes->calls(), ::testing::Contains(tree.path("Library")));
}

TEST_F(HomeViewModelTest, AClockThatJumpsBackLeavesTheCacheFresh) {
    cache(60s);
    clock.jump = -100h;
    makeScreen();
    refresh();
    loop.advance(10s);
    EXPECT_THAT(sizes->calls(), IsEmpty());
    EXPECT_EQ(figure("media"), 2);
}

TEST_F(HomeViewModelTest, DatesOfTheFarPastAndFutureDoNoHarm) {
    for (const char* date : {"0001-01-01T00:00:00Z", "9999-12-31T23:59:59Z"}) {
        tree.file("state/storage-inventory.json",
                  R"({"schemaVersion":1,"capturedAt":")" + std::string(date) +
                      R"(","volumeUsedBytes":1,"buckets":[{"id":"media","titleKey":"t","icon":"i",)"
                      R"("bytes":7,"paths":[]}]})");
        makeScreen();
        refresh();
        EXPECT_EQ(figure("media"), 7) << date;
        loop.advance(2s);
    }
}

TEST_F(HomeViewModelTest, ADamagedFileAndOneOfANewerVersionAreMeasuredAnew) {
    for (const char* bytes :
         {"{\"schemaVersion\":1,\"captur", "", "[]",
          R"({"schemaVersion":2,"capturedAt":"2026-01-31T08:15:00Z","volumeUsedBytes":1,"buckets":[]})"}) {
        tree.file("state/storage-inventory.json", bytes);
        makeScreen();
        screen->refresh(model);
        EXPECT_TRUE(*screen->isLoadingInventory) << bytes;
        EXPECT_EQ(bytesOf(store->fileURL()), bytes);
        loop.drain();
        EXPECT_EQ(figure("documents"), 25) << bytes;
        EXPECT_TRUE(store->load()) << bytes;
    }
}

// The watcher.

TEST_F(HomeViewModelTest, OnlyRootsThatExistAreWatched) {
    makeScreen();
    watch();
    ASSERT_THAT(streams.requests, SizeIs(1));
    const std::vector<std::string>& paths = streams.requests[0]->paths;
    EXPECT_THAT(paths, ::testing::Contains(tree.path("Documents")));
    EXPECT_THAT(paths, ::testing::Not(::testing::Contains(tree.path("Music"))));
    EXPECT_EQ(streams.requests[0]->latency, 3.0);
    screen->startWatching();
    loop.drain();
    EXPECT_THAT(streams.requests, SizeIs(1));
}

TEST_F(HomeViewModelTest, AChangeIsMeasuredAfterFiveQuietSeconds) {
    makeScreen();
    watch();
    refresh();
    sizes->forgetCalls();
    setSize("Movies", 90);
    change("Movies/new");
    loop.advance(4s);
    change("Movies/new");
    loop.advance(4900ms);
    EXPECT_THAT(sizes->calls(), IsEmpty());
    loop.advance(200ms);
    EXPECT_EQ(figure("media"), 90);
    EXPECT_EQ(figure("system"), 385);
    EXPECT_THAT(sizes->calls(), ElementsAre(tree.path("Pictures"), tree.path("Movies"), tree.path("Music")));
    EXPECT_EQ(store->load()->buckets[2].bytes, 90);
}

TEST_F(HomeViewModelTest, ChangesWithoutEndAreMeasuredThirtySecondsAfterTheFirst) {
    makeScreen();
    watch();
    refresh();
    sizes->forgetCalls();
    for (int second = 0; second < 30; second += 3) {
        change("Library/log");
        EXPECT_THAT(sizes->calls(), IsEmpty()) << second;
        loop.advance(3s);
    }
    EXPECT_THAT(sizes->calls(), ElementsAre(tree.path("Library")));
}

TEST_F(HomeViewModelTest, AfterThirtySecondsAChangeWaitsNoLonger) {
    makeScreen();
    watch();
    refresh();
    sizes->forgetCalls();
    change("Library/log");
    clock.jump = 31s;
    change("Library/log");
    loop.advance(0s);
    EXPECT_THAT(sizes->calls(), ElementsAre(tree.path("Library")));
}

TEST_F(HomeViewModelTest, AClockThatIsSetBackDoesNotPutTheMeasurementOff) {
    makeScreen();
    watch();
    refresh();
    sizes->forgetCalls();
    change("Library/log");
    clock.jump = -100h;
    for (int second = 0; second < 33; second += 3) {
        change("Library/log");
        loop.advance(3s);
    }
    EXPECT_THAT(sizes->calls(), ElementsAre(tree.path("Library")));
}

TEST_F(HomeViewModelTest, APathWithATrailingSlashIsItsRoots) {
    makeScreen();
    watch();
    refresh();
    sizes->forgetCalls();
    change("Movies/");
    loop.advance(6s);
    EXPECT_THAT(sizes->calls(), ::testing::Contains(tree.path("Movies")));
}

TEST_F(HomeViewModelTest, AFolderWhoseNameOnlyBeginsLikeARootIsNotBelowIt) {
    makeScreen();
    watch();
    refresh();
    sizes->forgetCalls();
    change("Moviesold/x");
    change("Elsewhere");
    loop.advance(60s);
    EXPECT_THAT(sizes->calls(), IsEmpty());
}

TEST_F(HomeViewModelTest, WhileABucketIsMeasuredItAndTheRemainderAreBusy) {
    makeScreen();
    watch();
    refresh();
    std::vector<IDs> pending;
    sizes->onCall = [&](const std::string&) { pending.push_back(*screen->pendingBucketIDs); };
    change("Movies/new");
    loop.advance(6s);
    ASSERT_THAT(pending, SizeIs(3));
    EXPECT_EQ(pending[0], (IDs{"media", "system"}));
    EXPECT_THAT(*screen->pendingBucketIDs, IsEmpty());
}

TEST_F(HomeViewModelTest, SeveralBucketsAreMeasuredOneAfterTheOtherByTheirNames) {
    makeScreen();
    watch();
    refresh();
    sizes->forgetCalls();
    change("Movies/new");
    change("Library/new");
    change("Documents/new");
    loop.advance(6s);
    EXPECT_THAT(sizes->calls(), ElementsAre(tree.path("Documents"), tree.path("Desktop"),
                                            tree.path("Downloads"), tree.path("Library"),
                                            tree.path("Pictures"), tree.path("Movies"), tree.path("Music")));
}

TEST_F(HomeViewModelTest, AMeasurementThatIsCutShortShowsNoHalfFigureAndLeavesNothingBusy) {
    makeScreen();
    watch();
    refresh();
    sizes->onCall = [&, first = true](const std::string&) mutable {
        if (std::exchange(first, false)) streams.requests.at(0)->onEvents({tree.path("Library")});
        loop.drain(); // the change is noted while the first place is being measured
    };
    change("Documents/new");
    loop.advance(5100ms);
    EXPECT_EQ(figure("documents"), 25);
    EXPECT_THAT(*screen->pendingBucketIDs, IsEmpty());
}

TEST_F(HomeViewModelTest, TheEndOfTheScreenEndsItsWatcher) {
    makeScreen();
    watch();
    refresh();
    screen.reset();
    loop.drain();
    EXPECT_TRUE(streams.requests.at(0)->isEnded);
}

// What the screen asks.

TEST_F(HomeViewModelTest, TheRemainderStaysSelectedThoughNoMeasuredBucketHasItsName) {
    cache(60s);
    makeScreen();
    screen->selectedBucketID = std::optional<std::string>("system");
    refresh();
    EXPECT_EQ(*screen->selectedBucketID, "system");
    screen->selectedBucketID = std::optional<std::string>("attic");
    refresh();
    EXPECT_EQ(*screen->selectedBucketID, std::nullopt);
    screen->selectedBucketID = std::optional<std::string>("media");
    refresh();
    EXPECT_EQ(*screen->selectedBucketID, "media");
}

TEST_F(HomeViewModelTest, TheInsightsFollowTheCleanupList) {
    makeScreen();
    refresh();
    EXPECT_THAT((*screen->dashboard)->cleanupInsights->categories, IsEmpty());
    const int readings = volumes->readings;
    model->groups = std::vector<CleanupGroup>{group("logs.stale", {item(tree.path("Library/Logs/a"), 30)})};
    screen->refreshCleanupInsights(model);
    loop.drain();
    ASSERT_THAT((*screen->dashboard)->cleanupInsights->categories, SizeIs(1));
    EXPECT_EQ((*screen->dashboard)->cleanupInsights->totalUsedBytes, 600);
    EXPECT_EQ(volumes->readings, readings);
    const auto library = screen->bucket("library");
    ASSERT_TRUE(library);
    ASSERT_THAT(screen->cleanupSummaries(*library), SizeIs(1));
    EXPECT_EQ(screen->cleanupSummaries(*library)[0].totalBytes, 30);
    EXPECT_THAT(screen->cleanupSummaries(*screen->bucket("documents")), IsEmpty());
    EXPECT_THAT(screen->cleanupSummaries(*screen->bucket("media")), IsEmpty());
}

TEST_F(HomeViewModelTest, InsightsThatCameDuringTheFirstMeasurementStayAtItsEnd) {
    makeScreen();
    sizes->onCall = [&, first = true](const std::string&) mutable {
        if (!std::exchange(first, false)) return;
        model->groups =
            std::vector<CleanupGroup>{group("logs.stale", {item(tree.path("Library/Logs/a"), 30)})};
        screen->refreshCleanupInsights(model);
    };
    refresh();
    EXPECT_THAT((*screen->dashboard)->cleanupInsights->categories, SizeIs(1));
}

TEST_F(HomeViewModelTest, InsightsWithoutADashboardAreLeft) {
    makeScreen();
    screen->refreshCleanupInsights(model);
    loop.drain();
    EXPECT_FALSE(screen->dashboard->has_value());
}

TEST_F(HomeViewModelTest, TheLegendHasUsedAndAvailable) {
    makeScreen();
    refresh();
    const std::vector<StorageSegment> legend = screen->legendSegments();
    ASSERT_THAT(legend, SizeIs(2));
    EXPECT_EQ(legend[0], (StorageSegment{"used", "Used", 600, SegmentColor::warning, false}));
    EXPECT_EQ(legend[1], (StorageSegment{"available", "Free", 400, SegmentColor::green, false}));
}

TEST_F(HomeViewModelTest, AVolumeWithoutFiguresIsNothingUsed) {
    volumes->info = {};
    makeScreen();
    refresh();
    EXPECT_EQ(screen->usedBytes(), 0);
    EXPECT_EQ(figure("system"), 0);
    EXPECT_EQ(figure("library"), 100);
}

} // namespace
} // namespace vesko::testing
