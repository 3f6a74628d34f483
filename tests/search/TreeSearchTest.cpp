#include "search/TreeSearch.h"

#include "concurrency/CurrentTask.h"
#include "platform/posix/WalkCounts.h"
#include "support/TempTree.h"
#include <chrono>
#include <filesystem>
#include <future>
#include <gmock/gmock.h>
#include <limits>
#include <thread>

namespace vesko {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::TempTree;

TEST(TreeSearch, QueriesByNameShareOneWalk) {
    const TempTree tree;
    tree.folder("a/build");
    const TreeSearch search;
    EXPECT_THAT(*search.search(tree.root(), FolderNamed{"build"}), ElementsAre(tree.path("a/build")));
    tree.folder("late/build");
    tree.folder("late/dist");
    EXPECT_THAT(*search.search(tree.root(), FolderNamed{"build"}), ElementsAre(tree.path("a/build")))
        << "the tree was read once, before";
    EXPECT_THAT(*search.search(tree.root(), FolderNamed{"dist"}), IsEmpty());
    EXPECT_THAT(*TreeSearch().search(tree.root(), FolderNamed{"dist"}), ElementsAre(tree.path("late/dist")));
}

TEST(TreeSearch, EveryRootHasAWalkOfItsOwn) {
    const TempTree tree;
    tree.folder("a/build");
    tree.folder("b/build");
    const TreeSearch search;
    EXPECT_THAT(*search.search(tree.url("a"), FolderNamed{"build"}), ElementsAre(tree.path("a/build")));
    EXPECT_THAT(*search.search(tree.url("b"), FolderNamed{"build"}), ElementsAre(tree.path("b/build")));
}

TEST(TreeSearch, AFailureIsToldToEveryQuery) {
    const TempTree tree;
    const TreeSearch search;
    for (int i = 0; i < 2; ++i) {
        const auto found = search.search(tree.url("missing"), EntryNamed{"a"});
        ASSERT_FALSE(found);
        EXPECT_EQ(found.error(), SearchFailure::noFolder);
    }
}

TEST(TreeSearch, ALimitBeyondAllDatesIsALimitAllTheSame) {
    const TempTree tree;
    std::filesystem::permissions(tree.file("Old.AppImage").path(), std::filesystem::perms(0755));
    const TreeSearch search;
    constexpr auto least = std::numeric_limits<std::int64_t>::min();
    EXPECT_THAT(*search.search(tree.root(), ApplicationsUnusedSince{least}), IsEmpty());
    EXPECT_TRUE(
        search.search(tree.root(), ApplicationsUnusedSince{std::numeric_limits<std::int64_t>::max()}));
}

TEST(TreeSearch, QueriesAtOnceGetTheSameAnswerFromOneWalk) {
    const TempTree tree;
    for (int i = 0; i < 120; ++i) {
        tree.folder("p" + std::to_string(i) + "/src/build");
        tree.file("p" + std::to_string(i) + "/package.json", "");
    }
    const TreeSearch search;
    const std::int64_t before = walkCounts(WalkPurpose::searching).foldersRead;
    std::vector<std::future<std::size_t>> answers;
    for (int i = 0; i < 8; ++i)
        answers.push_back(std::async(std::launch::async, [&, i] {
            if (i % 2) return search.search(tree.root(), FolderNamed{"build"})->size();
            return search.search(tree.root(), EntryNamed{"package.json"})->size();
        }));
    for (auto& answer : answers) EXPECT_EQ(answer.get(), 120U);
    // The root, and of each project its own folder and two below.
    EXPECT_EQ(walkCounts(WalkPurpose::searching).foldersRead - before, 1 + 120 * 3);
}

/// A cancelled task neither keeps waiting nor takes the answer away from the others.
TEST(TreeSearch, ACancelledQueryLeavesTheOthersTheirAnswer) {
    const TempTree tree;
    for (int i = 0; i < 60; ++i) tree.folder("p" + std::to_string(i) + "/src/build");
    for (int round = 0; round < 10; ++round) {
        const TreeSearch search;
        StopSource cancelled;
        auto stopped = std::async(std::launch::async, [&] {
            const CurrentTaskScope scope(cancelled.token());
            return search.search(tree.root(), FolderNamed{"build"});
        });
        std::vector<std::future<std::size_t>> others;
        for (int i = 0; i < 3; ++i)
            others.push_back(std::async(std::launch::async, [&] {
                return search.search(tree.root(), FolderNamed{"build"})->size();
            }));
        std::this_thread::sleep_for(std::chrono::microseconds(round * 100));
        cancelled.requestStop();
        if (const auto answer = stopped.get()) {
            EXPECT_EQ(answer->size(), 60U);
        } else {
            EXPECT_EQ(answer.error(), SearchFailure::stopped);
        }
        for (auto& other : others) EXPECT_EQ(other.get(), 60U);
    }
}

} // namespace
} // namespace vesko
