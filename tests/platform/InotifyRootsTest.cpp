#include "InotifyEventStream.h"

#include "platform/WatchedTree.h"
#include "support/MountNamespace.h"
#include <fcntl.h>
#include <gmock/gmock.h>
#include <linux/fs.h>
#include <stdio.h>
#include <sys/mount.h>
#include <sys/stat.h>

namespace vesko {
namespace {

using namespace std::chrono_literals;
using InotifyRootsTest = testing::WatchedTree;
using ::testing::Contains;
using ::testing::Each;
using ::testing::IsEmpty;
using ::testing::Not;
using testing::shortly;
using ::testing::StartsWith;

constexpr auto oneRound = 50ms;

TEST_F(InotifyRootsTest, EachOfSeveralIsWatchedAndNothingBesideThem) {
    tree.folder("a/inner");
    tree.folder("b");
    tree.folder("not-watched");
    letTheClockTick();
    start({path("a"), path("b"), path("a")}, options());
    EXPECT_EQ(stream->figures().folders, 3U);
    tree.file("not-watched/file");
    tree.file("a/inner/file");
    tree.file("b/file");
    EXPECT_TRUE(heard.waitFor({path("a/inner"), path("b")}));
    EXPECT_THAT(heard.heard(), Not(Contains(path("not-watched"))));
    EXPECT_THAT(heard.heard(), Not(Contains(root())));
}

TEST_F(InotifyRootsTest, OneInsideAnotherShareTheirWatches) {
    tree.folder("a/b/c");
    letTheClockTick();
    start({path("a"), path("a/b")}, options());
    EXPECT_EQ(stream->figures().watched, 3U);
    tree.file("a/b/c/file");
    EXPECT_TRUE(heard.waitFor({path("a/b/c")}));
    std::filesystem::remove_all(path("a/b/c"));
    tree.folder("a/b/d");
    EXPECT_TRUE(heard.waitFor({path("a/b"), path("a/b/d")}));
    settleBelow("a");
    tree.file("a/b/d/file");
    EXPECT_TRUE(heard.waitFor({path("a/b/d")}));
}

TEST_F(InotifyRootsTest, ALinkIsWatchedWhereItLeadsToUnderItsOwnName) {
    const testing::TempTree elsewhere;
    elsewhere.folder("target/inner");
    tree.link("link", elsewhere.path("target"));
    letTheClockTick();
    start({path("link")}, options());
    elsewhere.file("target/inner/file");
    EXPECT_TRUE(heard.waitFor({path("link/inner")}));
    EXPECT_THAT(heard.heard(), Each(StartsWith(path("link"))));
}

TEST_F(InotifyRootsTest, ALinkThatLeadsElsewhereIsFollowedThere) {
    const testing::TempTree elsewhere;
    elsewhere.folder("first/inner");
    elsewhere.folder("second/other");
    tree.link("link", elsewhere.path("first"));
    letTheClockTick();
    start({path("link")}, options(1000, oneRound));
    std::filesystem::remove(path("link"));
    tree.link("link", elsewhere.path("second"));
    EXPECT_TRUE(heard.waitFor({path("link"), path("link/other")}));
    elsewhere.file("second/other/file");
    EXPECT_TRUE(heard.waitFor({path("link/other")}));
    EXPECT_TRUE(becomes([](const auto& figures) { return figures.folders == 2; }));
}

TEST_F(InotifyRootsTest, AFolderMovedIntoItsPlaceIsWatchedAtOnce) {
    tree.folder("root/of-old");
    tree.folder("next/of-new");
    letTheClockTick();
    start({path("root")}, options()); // no round helps
    // In one step: where its place is empty for a moment, only a round finds what comes there.
    ASSERT_EQ(::renameat2(AT_FDCWD, path("next").c_str(), AT_FDCWD, path("root").c_str(), RENAME_EXCHANGE),
              0);
    EXPECT_TRUE(heard.waitFor({path("root"), path("root/of-new")}));
    settleBelow("root");
    tree.file("next/of-old/file");
    tree.file("root/of-new/file");
    EXPECT_TRUE(heard.waitFor({path("root/of-new")}));
    EXPECT_THAT(heard.heard(), Not(Contains(path("root/of-old"))));
    EXPECT_EQ(stream->figures().watched, 2U);
}

TEST_F(InotifyRootsTest, OneThatIsRemovedIsToldAndOneThatComesBackAsWell) {
    tree.folder("root/inner");
    letTheClockTick();
    start({path("root")}, options(1000, oneRound));
    std::filesystem::remove_all(path("root"));
    EXPECT_TRUE(heard.waitFor({path("root")}));
    EXPECT_TRUE(becomes([](const auto& figures) { return figures.folders == 1 && figures.watched == 0; }));
    std::this_thread::sleep_for(300ms);
    heard.forgetAll();
    std::this_thread::sleep_for(4 * oneRound);
    EXPECT_THAT(heard.heard(), IsEmpty()) << "its absence is told in every round";
    tree.file("root/inner/file");
    EXPECT_TRUE(heard.waitFor({path("root"), path("root/inner")}));
    ASSERT_TRUE(becomes([](const auto& figures) { return figures.watched == 2; }));
    settleBelow("root");
    tree.file("root/inner/second");
    EXPECT_TRUE(heard.waitFor({path("root/inner")}));
}

TEST_F(InotifyRootsTest, OneThatIsMissingAtFirstIsToldWhenItComes) {
    tree.folder("there");
    letTheClockTick();
    start({path("there"), path("later/root")}, options(1000, oneRound));
    tree.file("later/root/inner/file");
    EXPECT_TRUE(heard.waitFor({path("later/root"), path("later/root/inner")}));
    EXPECT_THAT(heard.heard(), Not(Contains(path("there"))));
}

TEST_F(InotifyRootsTest, OneWhoseParentWasMovedAwayIsToldOnce) {
    tree.folder("above/root/inner");
    letTheClockTick();
    start({path("above/root")}, options(1000, oneRound));
    rename("above", "elsewhere");
    EXPECT_TRUE(heard.waitFor({path("above/root")}));
    heard.forgetAll();
    tree.file("elsewhere/root/inner/file");
    rename("elsewhere", "above");
    EXPECT_TRUE(heard.waitFor({path("above/root"), path("above/root/inner")}));
}

TEST_F(InotifyRootsTest, MountsBelowAreNotEntered) {
    tree.folder("root/mounted");
    tree.folder("bound/inner");
    tree.folder("root/bind");
    tree.folder("root/beside");
    const auto wrong = testing::inMountNamespace([&]() -> std::string {
        if (::mount("none", path("root/mounted").c_str(), "tmpfs", 0, nullptr) != 0) return "no tmpfs";
        if (::mount(path("bound").c_str(), path("root/bind").c_str(), nullptr, MS_BIND, nullptr) != 0)
            return "no bind mount";
        letTheClockTick();
        start({path("root")}, options());
        if (stream->figures().watched != 2) return "more folders than the two";
        tree.file("root/mounted/file");
        tree.file("bound/inner/file");
        tree.file("root/beside/file");
        if (!heard.waitFor({path("root/beside")})) return "nothing is told";
        if (heard.heard().size() != 1) return "something else is told";
        stream.reset();
        return {};
    });
    if (!wrong) GTEST_SKIP() << "mount namespaces are refused here";
    EXPECT_EQ(*wrong, "");
}

TEST_F(InotifyRootsTest, AFolderThatBecomesReadableIsWatched) {
    const std::string wrong = testing::asOrdinaryUser([&]() -> std::string {
        const testing::TempTree own;
        own.folder("closed/inner");
        if (::chmod(own.path("closed").c_str(), 0) != 0) return "no rights";
        letTheClockTick();
        start({own.root().path()}, options());
        if (stream->figures().watched != 1) return "what can't be read is watched";
        if (::chmod(own.path("closed").c_str(), 0755) != 0) return "no rights";
        if (!heard.waitFor({own.path("closed"), own.path("closed/inner")})) return "not told";
        heard.forgetAll();
        own.file("closed/inner/file");
        if (!heard.waitFor({own.path("closed/inner")})) return "not watched";
        stream.reset();
        return {};
    });
    EXPECT_EQ(wrong, "");
}

} // namespace
} // namespace vesko
