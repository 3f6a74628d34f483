#include "core/MeasuringRuns.h"

#include "base/ChildProcess.h"
#include "concurrency/CurrentTask.h"
#include "core/DirectoryStoragePathSizer.h"
#include "core/MeasuredTrees.h"
#include "core/SharedStoragePathSizer.h"
#include "platform/OddTree.h"
#include "platform/TreeToolRun.h"
#include "platform/posix/FolderHandle.h"
#include "platform/posix/TreeReadings.h"
#include "platform/posix/WalkCounts.h"
#include <atomic>
#include <gmock/gmock.h>
#include <thread>

namespace vesko {
namespace {

using ::testing::Optional;
using TreesOfRun = std::shared_ptr<MeasuredTrees>;

class MeasuringRunsTest : public ::testing::Test {
protected:
    std::optional<std::int64_t> measure(const TreesOfRun& run, std::string_view path) {
        return run->bytes(tree.url(path), false);
    }
    std::int64_t du(std::string_view path) { return duBytes(tree.path(path), false); }
    std::int64_t foldersRead() const {
        return walkCounts(WalkPurpose::measuring).foldersRead - before_.foldersRead;
    }
    /// 301 folders that take a while to read.
    void growLarge() {
        for (int folder = 0; folder < 300; ++folder)
            for (int file = 0; file < 20; ++file)
                tree.file("large/" + std::to_string(folder) + "/" + std::to_string(file), 0);
    }

    const OddTree tree{OddTree::Place::memory};
    MeasuringRuns runs;

private:
    const WalkCounts before_ = walkCounts(WalkPurpose::measuring);
};

TEST_F(MeasuringRunsTest, RunsThatOverlapInTimeReadWhatTheyShareOnce) {
    tree.file("home/caches/one/deep/file", 70'000);
    tree.file("home/caches/two/file", 90'000);
    tree.file("home/other/file", 10'000);
    const TreesOfRun scan = runs.begin();
    const TreesOfRun load = runs.begin();
    EXPECT_THAT(measure(scan, "home/caches/one"), Optional(du("home/caches/one")));
    EXPECT_THAT(measure(load, "home"), Optional(du("home")));
    EXPECT_THAT(measure(scan, "home/caches/two"), Optional(du("home/caches/two")));
    EXPECT_THAT(measure(scan, "home"), Optional(du("home")));
    EXPECT_EQ(foldersRead(), 6);
}

TEST_F(MeasuringRunsTest, WhatWasReadBeforeARunBeganIsReadAnewForIt) {
    tree.file("home/caches/file", 70'000);
    const TreesOfRun scan = runs.begin();
    const auto old = measure(scan, "home/caches");
    tree.file("home/caches/new", 200'000);
    const TreesOfRun load = runs.begin();
    EXPECT_THAT(measure(load, "home/caches"), Optional(du("home/caches")));
    EXPECT_THAT(measure(load, "home"), Optional(du("home")));
    EXPECT_NE(measure(load, "home/caches"), old);
    EXPECT_EQ(foldersRead(), 3);
}

TEST_F(MeasuringRunsTest, AFolderAroundTakesNothingThatWasReadBeforeItsRunBegan) {
    tree.file("home/caches/file", 70'000);
    const TreesOfRun scan = runs.begin();
    measure(scan, "home/caches");
    tree.file("home/caches/new", 200'000);
    const TreesOfRun load = runs.begin();
    EXPECT_THAT(measure(load, "home"), Optional(du("home")));
    EXPECT_EQ(foldersRead(), 3);
}

TEST_F(MeasuringRunsTest, AnOlderRunUsesWhatAYoungerOneRead) {
    tree.file("home/caches/file", 70'000);
    const TreesOfRun scan = runs.begin();
    measure(runs.begin(), "home"); // that run is over
    EXPECT_THAT(measure(scan, "home/caches"), Optional(du("home/caches")));
    EXPECT_EQ(foldersRead(), 2);
}

TEST_F(MeasuringRunsTest, OneRunAfterAnotherSharesNothing) {
    tree.file("home/caches/file", 70'000);
    measure(runs.begin(), "home");
    tree.file("home/caches/new", 200'000);
    EXPECT_THAT(measure(runs.begin(), "home"), Optional(du("home")));
    EXPECT_EQ(foldersRead(), 4);
}

TEST_F(MeasuringRunsTest, FilesOfSeveralNamesCountOnceInEachFolderWhoeverAsks) {
    tree.file("home/a/one", 300'000);
    tree.hardLink("home/b/other", "home/a/one");
    const TreesOfRun scan = runs.begin();
    const TreesOfRun load = runs.begin();
    for (const char* place : {"home/a", "home/b"}) EXPECT_THAT(measure(scan, place), Optional(du(place)));
    EXPECT_THAT(measure(load, "home"), Optional(du("home")));
    EXPECT_THAT(measure(load, "home/b"), Optional(du("home/b")));
}

TEST_F(MeasuringRunsTest, RunsThatMeasureAtTheSameMomentReadEachFolderOnce) {
    growLarge();
    const std::int64_t whole = du("large");
    const std::int64_t part = du("large/0");
    const TreesOfRun scan = runs.begin();
    const TreesOfRun load = runs.begin();
    std::atomic<int> right{0};
    std::vector<std::thread> threads;
    for (int worker = 0; worker < 4; ++worker)
        threads.emplace_back([&, worker] {
            for (int folder = worker; folder < 300; folder += 4)
                right += measure(scan, "large/" + std::to_string(folder)) == std::optional(part) ? 1 : 0;
        });
    threads.emplace_back([&] { right += measure(load, "large") == std::optional(whole) ? 1 : 0; });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(right, 301);
    EXPECT_EQ(foldersRead(), 301);
}

TEST_F(MeasuringRunsTest, ARunWhoseShareOfTheWorkIsCancelledLeavesTheOtherItsFigure) {
    growLarge();
    const std::int64_t whole = du("large");
    for (int attempt = 0; attempt < 10; ++attempt) {
        const StopSource source;
        std::thread cancelled([&, load = runs.begin()] {
            const CurrentTaskScope scope(source.token());
            measure(load, "large");
        });
        std::thread other([&, scan = runs.begin()] { EXPECT_THAT(measure(scan, "large"), Optional(whole)); });
        std::this_thread::sleep_for(std::chrono::microseconds(200 * attempt));
        source.requestStop();
        cancelled.join();
        other.join();
    }
}

TEST_F(MeasuringRunsTest, NothingIsKeptThatNoRunMayUse) {
    tree.file("t/a/one", 70'000);
    tree.file("t/b/one", 70'000);
    tree.hardLink("t/b/other", "t/a/one");
    TreeReadings readings;
    const auto measureTree = [&](std::uint64_t since, const std::string& path) {
        return readings.bytes({tree.path(path), false, *statusAt(tree.path(path))}, since);
    };
    const std::uint64_t first = readings.beginRun();
    measureTree(first, "t/a");
    EXPECT_EQ(readings.keptFolders(), 1);
    const std::uint64_t second = readings.beginRun();
    measureTree(second, "t");
    EXPECT_EQ(readings.keptFolders(), 4);
    readings.endRun(first);
    EXPECT_EQ(readings.keptFolders(), 3);
    EXPECT_THAT(measureTree(second, "t/a"), Optional(du("t/a")));
    EXPECT_EQ(foldersRead(), 4);
    readings.endRun(second);
    EXPECT_EQ(readings.keptFolders(), 0);
}

TEST(SharedStoragePathSizer, GivesTheFiguresOfTheSizerThatSharesNothing) {
    const OddTree tree;
    tree.file("t/a/one", 300'000);
    tree.file("t/own", 5'000);
    tree.folder("t/empty");
    tree.file("outside/big", 400'000);
    tree.link("t/a/link", tree.path("outside"));
    const SharedStoragePathSizer shared(std::make_shared<const MeasuringRuns>());
    const auto run = shared.forOneRun();
    ASSERT_TRUE(run);
    for (const char* place : {"t", "t/a", "t/empty", "t/own", "t/a/link", "t/a/link/big", "t/missing"}) {
        const std::int64_t alone = DirectoryStoragePathSizer().allocatedBytes(tree.url(place));
        EXPECT_EQ(shared.allocatedBytes(tree.url(place)), alone) << place;
        EXPECT_EQ(run->allocatedBytes(tree.url(place)), alone) << place;
    }
}

TEST(SharedStoragePathSizer, ForACancelledTaskNothingIsMeasuredAndNoProgramStarted) {
    const OddTree tree;
    tree.file("t/one", 300'000);
    const SharedStoragePathSizer shared(std::make_shared<const MeasuringRuns>());
    const std::int64_t started = childrenStarted();
    const StopSource source;
    source.requestStop();
    const CurrentTaskScope scope(source.token());
    EXPECT_EQ(shared.allocatedBytes(tree.url("t")), 0);
    EXPECT_EQ(DirectoryStoragePathSizer().allocatedBytes(tree.url("t")), 0);
    EXPECT_EQ(childrenStarted(), started);
}

} // namespace
} // namespace vesko
