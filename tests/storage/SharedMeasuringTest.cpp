#include "base/FileSystem.h"
#include "core/DirectoryStoragePathSizer.h"
#include "core/SharedStoragePathSizer.h"
#include "orchestration/CleanupFixture.h"
#include "platform/posix/WalkCounts.h"
#include "storage/FakeEventStream.h"
#include "storage/HomeViewModel.h"
#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>

namespace vesko::testing {
namespace {

using namespace std::chrono_literals;
using Figures = std::map<std::string, std::int64_t>;

class SteadyVolume final : public DiskVolumeReading {
public:
    DiskVolumeInfo readVolume() const override {
        return {1'000'000'000, 400'000'000, "Disk", AvailableSpaceMetric::standard};
    }
};

/// The dashboard and a scan over real folders, measured by what the program measures with.
class SharedMeasuringTest : public CleanupTest {
protected:
    SharedMeasuringTest() {
        parts.scanEngineFactory = nullptr;
        home.tasks = context;
        home.inventorySizer = std::make_shared<const SharedStoragePathSizer>(parts.measuringRuns);
        home.store = std::make_shared<StorageInventoryStore>(tree.url("state/storage-inventory.json"));
        home.volumeReader = std::make_shared<SteadyVolume>();
        home.makeStream = streams.maker();
        home.home = tree.url("home");
        make();
        // Whatever a scan measures here lies in one of the dashboard's folders.
        for (const char* cache : {"pip", "Yarn", "go-build"})
            fill("Library/Caches/" + std::string(cache), 40);
        fill("Library/Developer/Xcode/DerivedData/app-1", 30);
        fill("Library/Application Support/com.example.app", 20);
        fill("Documents/letters", 30);
        fill("Downloads", 5);
        fill("Movies", 5);
    }
    ~SharedMeasuringTest() override { screen.reset(); }

    /// So many folders with a file each.
    void fill(const std::string& place, int count) {
        for (int i = 0; i < count; ++i)
            tree.file("home/" + place + "/part-" + std::to_string(i) + "/file", std::string(10'000, 'x'));
    }
    void makeScreen() { screen = std::make_shared<HomeViewModel>(home); }
    void settle() {
        ASSERT_TRUE(loop.waitFor([&] {
            return registry.empty() && !*screen->isLoadingInventory && screen->pendingBucketIDs->empty();
        }));
    }
    Figures dashboard() const {
        Figures figures;
        for (const StorageCategoryBucket& bucket : (*screen->dashboard)->buckets)
            figures[bucket.id] = bucket.bytes;
        return figures;
    }
    Figures list() const {
        Figures figures;
        for (const CleanupGroup& each : *model->groups)
            for (const ScannableItem& found : each.items) figures[each.id + found.url.path()] = found.size;
        return figures;
    }
    /// All below the folders of the buckets, themselves too.
    std::int64_t foldersIn(const std::vector<std::string>& places) const {
        std::int64_t count = 0;
        for (const std::string& place : places) {
            ++count;
            for (const auto& entry :
                 std::filesystem::recursive_directory_iterator(tree.path("home/" + place)))
                count += entry.is_directory() ? 1 : 0;
        }
        return count;
    }
    std::int64_t foldersRead() {
        const std::int64_t all = walkCounts(WalkPurpose::measuring).foldersRead;
        return all - std::exchange(readBefore_, all);
    }

    ScopedEnvironment homeFolder{"HOME", tree.path("home")};
    ScopedEnvironment data{"XDG_DATA_HOME", std::nullopt};
    FakeEventStreams streams;
    HomeViewModelParts home;
    std::shared_ptr<HomeViewModel> screen;

private:
    std::int64_t readBefore_ = 0;
};

TEST_F(SharedMeasuringTest, TheDashboardAndAScanThatRunTogetherReadEachFolderOnce) {
    scan();
    const Figures listAlone = list();
    foldersRead();
    model.reset();
    make();
    scan();
    EXPECT_GE(foldersRead(), 150); // so much is there to be shared
    home.inventorySizer = std::make_shared<const DirectoryStoragePathSizer>();
    makeScreen();
    screen->refresh(model);
    settle();
    const Figures dashboardAlone = dashboard();

    std::filesystem::remove_all(tree.path("state"));
    home.inventorySizer = std::make_shared<const SharedStoragePathSizer>(parts.measuringRuns);
    model.reset();
    make();
    makeScreen();
    foldersRead();
    screen->refresh(model);
    const TaskHandle<void> scanning = beginScan();
    ASSERT_TRUE(loop.waitFor([&] { return scanning.done(); }));
    settle();
    EXPECT_EQ(foldersRead(), foldersIn({"Library", "Documents", "Downloads", "Movies"}));
    EXPECT_EQ(dashboard(), dashboardAlone);
    EXPECT_EQ(list(), listAlone);
}

TEST_F(SharedMeasuringTest, AfterOneChangeOnlyItsBucketIsRead) {
    makeScreen();
    screen->startWatching();
    screen->refresh(model);
    settle();
    EXPECT_EQ(foldersRead() > 0, true);
    const Figures before = dashboard();
    tree.file("home/Documents/letters/part-7/new", std::string(300'000, 'x'));
    ASSERT_TRUE(loop.waitFor([&] { return !streams.requests.empty(); }));
    foldersRead();
    streams.requests.at(0)->onEvents({tree.path("home/Documents/letters/part-7")});
    ASSERT_TRUE(loop.waitFor([&] { return loop.timers() > 0; }));
    loop.advance(5s);
    settle();
    EXPECT_EQ(foldersRead(), foldersIn({"Documents", "Downloads"}));
    Figures expected = before;
    const std::int64_t added = dashboard()["documents"] - before.at("documents");
    EXPECT_GE(added, 300'000);
    EXPECT_LE(added, 310'000);
    expected["documents"] += added;
    expected["system"] -= added;
    EXPECT_EQ(dashboard(), expected);
}

TEST_F(SharedMeasuringTest, ABucketsFolderThatIsALinkCountsAsTheLinkAndAMissingOneNothing) {
    tree.file("elsewhere/large", std::string(3'000'000, 'x'));
    tree.link("home/Pictures", tree.path("elsewhere"));
    tree.link("home/Music", tree.path("nowhere"));
    std::filesystem::remove_all(tree.path("home/Movies"));
    makeScreen();
    screen->refresh(model);
    settle();
    EXPECT_EQ(dashboard().at("media"), 0);
    EXPECT_EQ(dashboard().at("applications"), 0);
    EXPECT_GT(dashboard().at("library"), 1'000'000);
}

TEST_F(SharedMeasuringTest, WhatCannotBeReadBelowABucketIsPassedOver) {
    const std::string closed = tree.path("home/Documents/closed");
    tree.file("home/Documents/closed/file", std::string(500'000, 'x'));
    makeScreen();
    screen->refresh(model);
    settle();
    const std::int64_t open = dashboard().at("documents");
    std::filesystem::permissions(closed, std::filesystem::perms::none);
    if (directChildren(FileURL(closed), Hidden::include)) GTEST_SKIP() << "this user may read everything";
    std::filesystem::remove_all(tree.path("state"));
    makeScreen();
    screen->refresh(model);
    settle();
    std::filesystem::permissions(closed, std::filesystem::perms::owner_all);
    EXPECT_LE(dashboard().at("documents"), open - 500'000);
    EXPECT_GT(dashboard().at("documents"), 300'000);
}

} // namespace
} // namespace vesko::testing
