#include "orchestration/DeletionRun.h"

#include "orchestration/CleanupFixture.h"

namespace vesko::testing {
namespace {

/// Removes everything, or fails where the path is among `failing`; gives what was asked to be removed.
std::vector<std::string> carryOut(DeletionRun& run, const URLSet& failing = {}) {
    run.prepare();
    std::vector<std::string> removed;
    while (const ScannableItem* next = run.next()) {
        removed.push_back(next->url.path());
        if (failing.contains(next->url))
            run.failed("no");
        else
            run.succeeded();
    }
    return removed;
}

TEST(DeletionRun, GoesThroughTheSelectionInListOrder) {
    DeletionRun run({group("a", {item("/a2", 2), item("/a1", 1)}), group("b", {item("/b", 9)})},
                    urls({"/a1", "/b", "/a2", "/x"}), nullptr);
    EXPECT_EQ(carryOut(run), (std::vector<std::string>{"/a2", "/a1", "/b"}));
    EXPECT_EQ(run.deletedCount(), 3);
    EXPECT_EQ(run.freedBytes(), 12);
    EXPECT_TRUE(run.remainingGroups().empty());
}

TEST(DeletionRun, TakesOnlyWhatItMay) {
    const URLSet only = urls({"/b", "/c"});
    DeletionRun run({group("a", {item("/a"), item("/b"), item("/c")})}, urls({"/a", "/b"}), &only);
    EXPECT_EQ(carryOut(run), std::vector<std::string>{"/b"});
    EXPECT_EQ(pathsOf(run.remainingGroups().at(0)), (std::vector<std::string>{"/a", "/c"}));
}

TEST(DeletionRun, WhatLiesInsideARemovedItemIsGoneWithIt) {
    DeletionRun run({group("a", {item("/h/x", 100)}), group("b", {item("/h/x/y/z", 30), item("/h/xy", 5)})},
                    urls({"/h/x", "/h/x/y/z", "/h/xy"}), nullptr);
    EXPECT_EQ(carryOut(run), (std::vector<std::string>{"/h/x", "/h/xy"}));
    EXPECT_EQ(run.deletedCount(), 3);
    EXPECT_EQ(run.freedBytes(), 105);
    EXPECT_TRUE(run.remainingGroups().empty());
}

TEST(DeletionRun, WhatWasRemovedBeforeItsFolderIsCountedOnce) {
    DeletionRun run({group("a", {item("/h/x/y/z", 30), item("/h/x/y", 40)}), group("b", {item("/h/x", 100)})},
                    urls({"/h/x", "/h/x/y", "/h/x/y/z"}), nullptr);
    run.prepare();
    EXPECT_EQ(run.next()->url.path(), "/h/x/y");
    run.succeeded();
    EXPECT_EQ(run.next()->url.path(), "/h/x");
    EXPECT_EQ(run.progress(1000).bytesFreed, 100);
    run.succeeded();
    EXPECT_EQ(run.next(), nullptr);
    EXPECT_EQ(run.deletedCount(), 3);
    EXPECT_EQ(run.freedBytes(), 100);
}

TEST(DeletionRun, AFolderThatFailedTakesNothingWithIt) {
    DeletionRun run({group("a", {item("/h/x", 100)}), group("b", {item("/h/x/y", 30)})},
                    urls({"/h/x", "/h/x/y"}), nullptr);
    EXPECT_EQ(carryOut(run, urls({"/h/x"})), (std::vector<std::string>{"/h/x", "/h/x/y"}));
    EXPECT_EQ(run.deletedCount(), 1);
    EXPECT_EQ(run.freedBytes(), 30);
    EXPECT_EQ(run.errors(), std::vector<std::string>{"x: no"});
    EXPECT_EQ(idsOf(run.remainingGroups()), std::vector<std::string>{"a"});
}

TEST(DeletionRun, TheSameItemInAnotherGroupLeavesUncounted) {
    DeletionRun run({group("a", {item("/x", 100)}), group("b", {item("/x", 90), item("/y", 1)})},
                    urls({"/x"}), nullptr);
    EXPECT_EQ(carryOut(run), std::vector<std::string>{"/x"});
    EXPECT_EQ(run.deletedCount(), 1);
    EXPECT_EQ(run.freedBytes(), 100);
    ASSERT_EQ(idsOf(run.remainingGroups()), std::vector<std::string>{"b"});
    EXPECT_EQ(pathsOf(run.remainingGroups()[0]), std::vector<std::string>{"/y"});
}

TEST(DeletionRun, TwoWaysOfWritingOnePathAreOnePlace) {
    DeletionRun run({group("a", {item("/h/./x", 100), item("/h/x", 50)})}, urls({"/h/./x", "/h/x"}), nullptr);
    EXPECT_EQ(carryOut(run), std::vector<std::string>{"/h/./x"});
    EXPECT_EQ(run.deletedCount(), 2);
    EXPECT_EQ(run.freedBytes(), 100);
}

TEST(DeletionRun, AnObjectOfAToolIsInNoFolder) {
    DeletionRun run({group("a", {item("/h/x", 100)}),
                     group("b", {item("/h/x/v", 30, "docker:volume:v"), item("/h/x/s", 20, "simulator:1"),
                                 item("/h/x/f", 10, "simulator:")})},
                    urls({"/h/x", "/h/x/v", "/h/x/s", "/h/x/f"}), nullptr);
    EXPECT_EQ(carryOut(run), (std::vector<std::string>{"/h/x", "/h/x/v", "/h/x/s"}));
    EXPECT_EQ(run.freedBytes(), 150);
    EXPECT_EQ(run.deletedCount(), 4);
}

TEST(DeletionRun, FailuresNameTheItemFitToBeShown) {
    DeletionRun run({group("a", {item("/h/b\xff\n")})}, urls({"/h/b\xff\n"}), nullptr);
    carryOut(run, urls({"/h/b\xff\n"}));
    EXPECT_EQ(run.errors(), std::vector<std::string>{"b\\xFF\\x0A: no"});
}

TEST(DeletionRun, TheProgressCountsItemsAndBytes) {
    DeletionRun run(
        {group("a", {item("/a", 50), item("/b", 30)}), group("c", {item("/a", 50), item("/a/in", 5)})},
        urls({"/a", "/b", "/a/in"}), nullptr);
    run.prepare();
    run.next();
    EXPECT_EQ(run.progress(0), (DeletionProgress{0, 3, 0, 85, ""}));
    EXPECT_EQ(run.progress(20), (DeletionProgress{0, 3, 20, 85, ""}));
    EXPECT_EQ(run.progress(70).bytesFreed, 50);
    run.succeeded();
    EXPECT_EQ(run.progress(0), (DeletionProgress{1, 3, 50, 85, ""}));
    run.next();
    run.failed("no");
    EXPECT_EQ(run.progress(0).itemsDone, 2);
    EXPECT_EQ(run.next(), nullptr);
    EXPECT_EQ(run.progress(0), (DeletionProgress{3, 3, 50, 85, ""}));
}

TEST(DeletionRun, WhatHasGoneIsToldOnce) {
    DeletionRun run({group("a", {item("/a"), item("/a/b"), item("/c")})}, urls({"/a", "/a/b", "/c"}),
                    nullptr);
    carryOut(run, urls({"/c"}));
    EXPECT_EQ(run.takeGoneURLs(), (std::vector<FileURL>{FileURL("/a"), FileURL("/a/b")}));
    EXPECT_TRUE(run.takeGoneURLs().empty());
}

std::vector<std::string> pathsOf(const std::vector<const ScannableItem*>& items) {
    std::vector<std::string> paths;
    for (const ScannableItem* each : items) paths.push_back(each->url.path());
    return paths;
}

TEST(DeletionRun, WhatIsHandedOverTogetherDoesNotHangOnEachOther) {
    DeletionRun run({group("a", {item("/a", 9), item("/b/in", 8), item("/b", 7), item("/c", 6),
                                 item("/c/in", 5), item("/d", 4)}),
                     group("b", {item("/a", 9), item("/e", 1)})},
                    urls({"/a", "/b/in", "/b", "/c", "/c/in", "/d", "/e"}), nullptr);
    run.prepare();
    // A folder may come behind what lies in it; what lies in a folder waits for the folder's outcome.
    EXPECT_EQ(pathsOf(run.nextFew(10)), (std::vector<std::string>{"/a", "/b/in", "/b", "/c"}));
    for (int ended = 0; ended < 3; ++ended) {
        run.succeeded();
        run.next();
    }
    run.failed("no");
    EXPECT_EQ(pathsOf(run.nextFew(10)), (std::vector<std::string>{"/c/in", "/d", "/e"}));
    run.succeeded();
    EXPECT_EQ(pathsOf(run.nextFew(1)), std::vector<std::string>{"/d"});
    EXPECT_EQ(pathsOf(run.nextFew(10)), (std::vector<std::string>{"/d", "/e"}));
    run.succeeded();
    EXPECT_EQ(pathsOf(run.nextFew(10)), std::vector<std::string>{"/e"});
    run.succeeded();
    EXPECT_TRUE(run.nextFew(10).empty());
    EXPECT_EQ(run.deletedCount(), 6);
}

TEST(DeletionRun, WhatAToolDeletesIsHandedOverAlone) {
    DeletionRun run(
        {group("a", {item("/a", 9), item("/v", 8, "docker:volume:v"), item("/s", 7, "simulator:1"),
                     item("/b", 6), item("/u", 5, "docker:unsupported")})},
        urls({"/a", "/v", "/s", "/b", "/u"}), nullptr);
    run.prepare();
    for (const char* alone : {"/a", "/v", "/s", "/b", "/u"}) {
        EXPECT_EQ(pathsOf(run.nextFew(10)), std::vector<std::string>{alone});
        run.succeeded();
    }
    EXPECT_TRUE(run.nextFew(10).empty());
}

TEST(DeletionRun, WhatHasNotEndedIsGivenAgain) {
    DeletionRun run({group("a", {item("/a", 2), item("/b", 1)})}, urls({"/a", "/b"}), nullptr);
    run.prepare();
    EXPECT_EQ(run.nextFew(2).size(), 2U);
    EXPECT_EQ(run.next()->url.path(), "/a");
    run.succeeded();
    EXPECT_EQ(run.next()->url.path(), "/b");
    EXPECT_EQ(run.next()->url.path(), "/b");
}

TEST(DeletionRunDeathTest, ASelectionBeyond63BitsStopsTheProcess) {
    DeletionRun run({group("a", {item("/a", INT64_MAX), item("/b", 1)})}, urls({"/a", "/b"}), nullptr);
    EXPECT_DEATH(run.prepare(), "a sum of bytes does not fit 63 bits");
}

TEST(DeletionRun, ASelectionOfAll63BitsIsCounted) {
    DeletionRun run({group("a", {item("/a", INT64_MAX - 1), item("/b", 1)})}, urls({"/a", "/b"}), nullptr);
    carryOut(run);
    EXPECT_EQ(run.freedBytes(), INT64_MAX);
    EXPECT_EQ(run.progress(INT64_MAX).bytesFreed, INT64_MAX);
}

TEST(DeletionRun, UntouchedGroupsShareTheirItems) {
    const std::vector<CleanupGroup> groups{group("a", {item("/a")}), group("b", {item("/b"), item("/c")}),
                                           group("empty", {})};
    DeletionRun run(groups, urls({"/c"}), nullptr);
    carryOut(run);
    const auto left = run.remainingGroups();
    ASSERT_EQ(idsOf(left), (std::vector<std::string>{"a", "b"}));
    EXPECT_TRUE(left[0].items.sharesMemory(groups[0].items));
    EXPECT_EQ(left[1].subtitle, groups[1].subtitle);
}

} // namespace
} // namespace vesko::testing
