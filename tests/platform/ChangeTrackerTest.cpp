#include "ChangeTracker.h"

#include "support/TempTree.h"
#include <fcntl.h>
#include <gmock/gmock.h>
#include <linux/fs.h>
#include <optional>
#include <stdio.h>

namespace vesko {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The tracker moves only when the test lets it, so what happens between two of its steps is no accident.
class ChangeTrackerTest : public ::testing::Test {
protected:
    void track(std::size_t mostWatches) {
        tracker.emplace(std::vector<std::string>{tree.root().path()}, mostWatches, distantFuture, isEnding);
        work();
    }
    void work() {
        while (tracker->hasWork()) tracker->work();
    }
    void follow() {
        tracker->readEvents();
        work();
    }
    void round() {
        follow();
        tracker->beginRound();
        work();
        follow();
    }
    void rename(std::string_view from, std::string_view to) const {
        std::filesystem::rename(tree.path(from), tree.path(to));
    }

    /// Of root, "q", "q/a" and "q/a/p" only the first and the last are watched: watches that come free go to
    /// the folder with the lowest number, and the numbers of removed folders are given out again.
    void watchTheDeepestAlone() {
        tree.folder("y");
        track(2);
        tree.folder("x");
        follow();
        tree.folder("q/a");
        follow();
        std::filesystem::remove(tree.path("x"));
        follow();
        tree.folder("q/a/p");
        round();
        ASSERT_EQ(tracker->folderCount(), 5U);
        std::filesystem::remove(tree.path("y"));
        round();
        ASSERT_EQ(tracker->folderCount(), 4U);
        ASSERT_EQ(tracker->watchCount(), 2U);
        tracker->takeChanges();
        tree.file("q/a/p/proof");
        follow();
        ASSERT_THAT(tracker->takeChanges(), ElementsAre(tree.path("q/a/p")));
    }

    static constexpr std::int64_t distantFuture = INT64_MAX; ///< nothing counts as changed at first sight

    testing::TempTree tree;
    std::atomic<bool> isEnding = false;
    std::optional<ChangeTracker> tracker;
};

TEST_F(ChangeTrackerTest, ASliceIsShortAndEndsWithTheStream) {
    for (int i = 0; i < 150; ++i) tree.folder(std::to_string(i));
    isEnding = true;
    tracker.emplace(std::vector<std::string>{tree.root().path()}, 1000, distantFuture, isEnding);
    tracker->work();
    EXPECT_EQ(tracker->watchCount(), 0U);
    isEnding = false;
    tracker->work();
    EXPECT_GT(tracker->watchCount(), 1U);
    EXPECT_LT(tracker->watchCount(), 100U);
    EXPECT_TRUE(tracker->hasWork());
}

TEST_F(ChangeTrackerTest, WhatIsMetAtFirstIsNotTold) {
    tree.folder("a/b");
    track(100);
    round();
    EXPECT_THAT(tracker->takeChanges(), IsEmpty());
}

TEST_F(ChangeTrackerTest, WhatIsFoundInANewFolderIsTold) {
    track(100);
    tree.folder("new/inner");
    follow();
    EXPECT_THAT(tracker->takeChanges(), ::testing::UnorderedElementsAre(tree.root().path(), tree.path("new"),
                                                                        tree.path("new/inner")));
}

TEST_F(ChangeTrackerTest, AFolderGoneBeforeItWasLookedAtIsForgotten) {
    track(100);
    tree.folder("new");
    tracker->readEvents();
    std::filesystem::remove(tree.path("new"));
    work();
    EXPECT_EQ(tracker->folderCount(), 1U);
}

TEST_F(ChangeTrackerTest, AFolderReplacedBeforeItWasLookedAtIsWatchedAsTheNewOne) {
    tree.folder("old/of-old");
    track(100);
    tree.folder("other/of-other");
    tracker->readEvents();
    std::filesystem::remove_all(tree.path("other"));
    rename("old", "other");
    work();
    follow();
    EXPECT_EQ(tracker->folderCount(), 3U);
    EXPECT_EQ(tracker->watchCount(), 3U);
    tracker->takeChanges();
    tree.file("other/of-old/file");
    follow();
    EXPECT_THAT(tracker->takeChanges(), Contains(tree.path("other/of-old")));
}

TEST_F(ChangeTrackerTest, AFolderThatSeemedGoneIsFoundAgainWhereNobodyTellsOfItsReturn) {
    watchTheDeepestAlone();
    tree.folder("q/a/p/new");
    tracker->readEvents();
    rename("q/a", "q/away");
    work();
    rename("q/away", "q/a");
    round();
    EXPECT_EQ(tracker->folderCount(), 5U);
    tracker->takeChanges();
    tree.file("q/a/p/new/file");
    round();
    EXPECT_THAT(tracker->takeChanges(), Contains(tree.path("q/a/p/new")));
}

TEST_F(ChangeTrackerTest, AWatchedFolderThatAnotherReplacedUnseenIsWatchedAnew) {
    watchTheDeepestAlone();
    tree.folder("q/z/p/other");
    round();
    ASSERT_EQ(
        ::renameat2(AT_FDCWD, tree.path("q/a").c_str(), AT_FDCWD, tree.path("q/z").c_str(), RENAME_EXCHANGE),
        0);
    round();
    tracker->takeChanges();
    tree.file("q/a/p/file");
    tree.file("q/a/p/other/file");
    round();
    const std::vector<std::string> changes = tracker->takeChanges();
    EXPECT_THAT(changes, Contains(tree.path("q/a/p")));
    EXPECT_THAT(changes, Contains(tree.path("q/a/p/other")));
}

TEST_F(ChangeTrackerTest, TooManyChangesAreToldByTheRoot) {
    for (int i = 0; i < 12; ++i) tree.folder(std::to_string(i));
    tracker.emplace(std::vector<std::string>{tree.root().path()}, 100, distantFuture, isEnding, 10);
    work();
    for (int i = 0; i < 10; ++i) tree.file(std::to_string(i) + "/file");
    follow();
    EXPECT_THAT(tracker->takeChanges(), ::testing::SizeIs(10));
    for (int i = 0; i < 12; ++i) tree.file(std::to_string(i) + "/file");
    follow();
    EXPECT_THAT(tracker->takeChanges(), ElementsAre(tree.root().path()));
    tree.file("3/file");
    follow();
    EXPECT_THAT(tracker->takeChanges(), ElementsAre(tree.path("3")));
}

} // namespace
} // namespace vesko
