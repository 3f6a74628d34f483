#include "InotifyEventStream.h"

#include "platform/WatchedTree.h"
#include <fcntl.h>
#include <gmock/gmock.h>
#include <linux/fs.h>
#include <stdio.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace vesko {
namespace {

using namespace std::chrono_literals;
using InotifyEventStreamTest = testing::WatchedTree;
using Paths = testing::HeardChanges::Paths;
using ::testing::Contains;
using ::testing::Each;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using ::testing::Not;
using testing::shortly;
using ::testing::StartsWith;

TEST_F(InotifyEventStreamTest, EveryKindOfChangeIsToldByItsFolderAlone) {
    const FileURL file = tree.file("a/b/file", "content");
    const std::string& name = file.path();
    tree.folder("a/b/inner");
    start();
    const std::vector<std::function<void()>> changes{
        [&] { tree.file("a/b/new"); },
        [&] { std::ofstream(name, std::ios::app) << "more"; },
        [&] { ASSERT_EQ(::truncate(name.c_str(), 2), 0); },
        [&] { ASSERT_EQ(::chmod(name.c_str(), 0600), 0); },
        [&] { ASSERT_EQ(::link(name.c_str(), path("a/b/second").c_str()), 0); },
        [&] { tree.link("a/b/link", "file"); },
        [&] { rename("a/b/file", "a/b/renamed"); },
        [&] { ASSERT_EQ(::unlink(path("a/b/renamed").c_str()), 0); },
        [&] { ASSERT_EQ(::rmdir(path("a/b/inner").c_str()), 0); },
    };
    for (std::size_t i = 0; i < changes.size(); ++i) {
        heard.forgetAll();
        changes[i]();
        ASSERT_TRUE(heard.waitFor({path("a/b")})) << "change " << i;
        std::this_thread::sleep_for(60ms);
        // A removed folder's own end may be told as well.
        Paths told = heard.heard();
        told.erase(path("a/b/inner"));
        EXPECT_THAT(told, ::testing::ElementsAre(path("a/b"))) << "change " << i;
    }
}

TEST_F(InotifyEventStreamTest, AFileThatIsHeldOpenAndGrowsIsTold) {
    tree.file("logs/log");
    start();
    std::ofstream log(path("logs/log"), std::ios::app);
    log << "line" << std::flush;
    EXPECT_TRUE(heard.waitFor({path("logs")}));
    heard.forgetAll();
    log << "line" << std::flush;
    EXPECT_TRUE(heard.waitFor({path("logs")}));
}

TEST_F(InotifyEventStreamTest, ReadingIsNoChange) {
    tree.file("a/file");
    start();
    EXPECT_EQ(testing::bytesOf(tree.url("a/file")), "x");
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root())) (void)entry;
    tree.file("other/proof");
    ASSERT_TRUE(heard.waitFor({path("other")}));
    EXPECT_THAT(heard.heard(), Not(Contains(path("a"))));
}

TEST_F(InotifyEventStreamTest, FoldersMadeWhileItRunsAreWatchedAndTold) {
    start();
    tree.folder("new/deeper/deepest");
    EXPECT_TRUE(heard.waitFor({root(), path("new"), path("new/deeper"), path("new/deeper/deepest")}));
    settle();
    tree.file("new/deeper/deepest/file");
    EXPECT_TRUE(heard.waitFor({path("new/deeper/deepest")}));
}

TEST_F(InotifyEventStreamTest, WhatIsPutIntoANewFolderAtOnceIsNotLost) {
    start();
    Paths expected;
    for (int i = 0; i < 200; ++i) {
        const std::string folder = "project-" + std::to_string(i) + "/src/deep";
        tree.file(folder + "/file");
        expected.insert(path(folder));
    }
    EXPECT_TRUE(heard.waitFor(expected));
}

TEST_F(InotifyEventStreamTest, AFolderChangedBeforeItWasReachedIsTold) {
    for (int i = 0; i < 300; ++i) tree.folder("many/" + std::to_string(i) + "/inside");
    letTheClockTick();
    stream = InotifyEventStream::make({root()}, shortly, heard.receiver(), options());
    tree.file("many/150/inside/file");
    EXPECT_TRUE(heard.waitFor({path("many/150/inside")}));
    ASSERT_TRUE(becomes([](const auto& figures) { return figures.isSettled; }));
    EXPECT_THAT(heard.heard(), Not(Contains(path("many/151/inside"))));
}

TEST_F(InotifyEventStreamTest, ARenamedFolderIsKnownByItsNewName) {
    tree.folder("old/inner");
    start();
    rename("old", "new");
    EXPECT_TRUE(heard.waitFor({root(), path("new"), path("new/inner")}));
    settleBelow("new");
    tree.file("new/inner/file");
    EXPECT_TRUE(heard.waitFor({path("new/inner")}));
    EXPECT_THAT(heard.heard(), Each(StartsWith(path("new"))));
}

TEST_F(InotifyEventStreamTest, FoldersThatChangePlacesAreBothStillWatched) {
    tree.folder("a/of-a");
    tree.folder("b/of-b");
    start();
    ASSERT_EQ(::renameat2(AT_FDCWD, path("a").c_str(), AT_FDCWD, path("b").c_str(), RENAME_EXCHANGE), 0);
    settle();
    tree.file("a/of-b/file");
    tree.file("b/of-a/file");
    EXPECT_TRUE(heard.waitFor({path("a/of-b"), path("b/of-a")}));
    EXPECT_EQ(stream->figures().watched, 5U);
}

TEST_F(InotifyEventStreamTest, AFolderReplacedByAnotherIsWatchedAnew) {
    tree.folder("place/inner");
    tree.folder("other/inner");
    start();
    for (int round = 0; round < 20; ++round) {
        rename("place", "aside");
        rename("other", "place");
        rename("aside", "other");
    }
    settle();
    tree.file("place/inner/file");
    tree.file("other/inner/file");
    EXPECT_TRUE(heard.waitFor({path("place/inner"), path("other/inner")}));
}

TEST_F(InotifyEventStreamTest, WhatIsMovedOutIsForgottenAndWhatIsMovedInIsWatched) {
    const testing::TempTree outside;
    tree.folder("a/leaves/inner");
    outside.folder("comes/inner");
    start();
    std::filesystem::rename(path("a/leaves"), outside.path("left"));
    EXPECT_TRUE(heard.waitFor({path("a")}));
    settleBelow("a");
    outside.file("left/inner/file");
    std::filesystem::rename(outside.path("comes"), path("a/came"));
    EXPECT_TRUE(heard.waitFor({path("a"), path("a/came"), path("a/came/inner")}));
    EXPECT_THAT(heard.heard(), Each(StartsWith(path("a"))));
    EXPECT_THAT(heard.heard(), Not(Contains(path("a/leaves/inner"))));
    settle();
    tree.file("a/came/inner/file");
    EXPECT_TRUE(heard.waitFor({path("a/came/inner")}));
    EXPECT_EQ(stream->figures().folders, 4U);
    EXPECT_EQ(stream->figures().watched, 4U);
}

TEST_F(InotifyEventStreamTest, ARemovedBranchIsToldAndForgotten) {
    for (int i = 0; i < 50; ++i) tree.file("a/gone/" + std::to_string(i) + "/inner/file");
    start();
    EXPECT_EQ(stream->figures().watched, 103U);
    std::filesystem::remove_all(path("a/gone"));
    EXPECT_TRUE(heard.waitFor({path("a")}));
    EXPECT_TRUE(becomes([](const auto& figures) { return figures.folders == 2 && figures.watched == 2; }));
    settle();
    tree.file("a/gone/0/inner/file");
    EXPECT_TRUE(heard.waitFor({path("a/gone/0/inner")}));
}

TEST_F(InotifyEventStreamTest, TheFirstChangeOfAQuietSpellIsToldAtOnceAndTheNextAreCollected) {
    tree.folder("a");
    tree.folder("b");
    start(1.0);
    tree.file("a/first");
    ASSERT_TRUE(heard.waitForCalls(1));
    for (int i = 0; i < 20; ++i) {
        tree.file("a/next-" + std::to_string(i));
        tree.file("b/next-" + std::to_string(i));
        std::this_thread::sleep_for(2ms);
    }
    ASSERT_TRUE(heard.waitForCalls(2));
    const auto calls = heard.calls();
    EXPECT_THAT(calls[0].paths, ::testing::ElementsAre(path("a")));
    EXPECT_THAT(calls[1].paths, ::testing::UnorderedElementsAre(path("a"), path("b")));
    EXPECT_GE(calls[1].at - calls[0].at, 990ms);
}

TEST_F(InotifyEventStreamTest, TheFirstChangeDoesNotWaitForALongLatency) {
    start(3600);
    tree.file("file");
    EXPECT_TRUE(heard.waitFor({root()}));
}

TEST_F(InotifyEventStreamTest, LinksAreNotFollowed) {
    const testing::TempTree outside;
    outside.folder("target");
    tree.link("link", outside.path("target"));
    tree.link("loop", ".");
    start();
    outside.file("target/file");
    tree.file("proof/file");
    EXPECT_TRUE(heard.waitFor({path("proof")}));
    EXPECT_THAT(heard.heard(), Each(StartsWith(root())));
    EXPECT_THAT(heard.heard(), Not(Contains(path("link"))));
    EXPECT_EQ(stream->figures().folders, 2U);
}

TEST_F(InotifyEventStreamTest, AnOddNameIsToldAsItsBytes) {
    const std::string odd = "line\nbreak-\xff-" + std::string(200, 'n');
    tree.folder(odd);
    start();
    tree.file(odd + "/file");
    EXPECT_TRUE(heard.waitFor({path(odd)}));
}

TEST_F(InotifyEventStreamTest, AFolderFarBelowIsWatched) {
    // Longer than a path may be for one call.
    std::string below;
    int parent = ::open(root().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int i = 0; i < 40; ++i) {
        const std::string name(200, 'd');
        ASSERT_EQ(::mkdirat(parent, name.c_str(), 0755), 0);
        const int inner = ::openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ::close(parent);
        parent = inner;
        below += "/" + name;
    }
    start();
    EXPECT_EQ(stream->figures().watched, 41U);
    const int file = ::openat(parent, "file", O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
    ASSERT_GE(file, 0);
    ::close(file);
    ::close(parent);
    EXPECT_TRUE(heard.waitFor({root() + below}));
}

TEST_F(InotifyEventStreamTest, AFloodEndsInTheRootAndEveryFolderIsFoundAgain) {
    tree.folder("flood");
    tree.folder("moves/inner");
    start();
    // The stream's thread stands still while more happens than the queue holds.
    std::mutex gate;
    gate.lock();
    heard.onCall([&] { const std::lock_guard through(gate); });
    tree.file("flood/first");
    ASSERT_TRUE(heard.waitForCalls(1));
    for (int i = 0; i < 12'000; ++i) tree.file("flood/" + std::to_string(i));
    tree.folder("made-in-the-flood/inner");
    rename("moves", "moved-in-the-flood");
    heard.forgetAll();
    gate.unlock();
    EXPECT_TRUE(heard.waitFor({root()}));
    EXPECT_THAT(heard.heard(), Not(Contains(path("made-in-the-flood"))));
    settle();
    tree.file("made-in-the-flood/inner/file");
    tree.file("moved-in-the-flood/inner/file");
    EXPECT_TRUE(heard.waitFor({path("made-in-the-flood/inner"), path("moved-in-the-flood/inner")}));
    EXPECT_EQ(stream->figures().folders, 6U);
    EXPECT_EQ(stream->figures().watched, 6U);
}

} // namespace
} // namespace vesko
