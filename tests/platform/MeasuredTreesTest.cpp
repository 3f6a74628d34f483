#include "core/MeasuredTrees.h"

#include "base/ChildProcess.h"
#include "concurrency/CurrentTask.h"
#include "core/SharedSizeCalculator.h"
#include "platform/OddTree.h"
#include "platform/TreeToolRun.h"
#include "platform/posix/RecordingVisitor.h"
#include "platform/posix/WalkCounts.h"
#include <atomic>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>
#include <sstream>
#include <thread>
#include <unistd.h>

namespace vesko {
namespace {

using ::testing::Eq;
using ::testing::Optional;

class MeasuredTreesTest : public ::testing::Test {
protected:
    std::optional<std::int64_t> keep(std::string_view path) { return trees.bytes(tree.url(path), false); }
    std::optional<std::int64_t> follow(std::string_view path) { return trees.bytes(tree.url(path), true); }
    std::int64_t du(std::string_view path, bool followLinks = false) {
        return duBytes(tree.path(path), followLinks);
    }
    std::int64_t foldersRead() const {
        return walkCounts(WalkPurpose::measuring).foldersRead - before_.foldersRead;
    }

    const OddTree tree;
    MeasuredTrees trees;

private:
    const WalkCounts before_ = walkCounts(WalkPurpose::measuring);
};

TEST_F(MeasuredTreesTest, TheSameFolderIsReadOnce) {
    tree.file("t/a/one", 70'000);
    EXPECT_THAT(keep("t"), Optional(du("t")));
    EXPECT_EQ(foldersRead(), 2);
    EXPECT_THAT(keep("t"), Optional(du("t")));
    EXPECT_THAT(trees.bytes(FileURL(tree.path("t") + "/"), false), Optional(du("t")));
    EXPECT_EQ(foldersRead(), 2);
}

TEST_F(MeasuredTreesTest, WithoutLinksBothKindsOfRequestShare) {
    tree.file("t/a/one", 70'000);
    EXPECT_THAT(follow("t"), Optional(du("t")));
    EXPECT_THAT(keep("t"), Optional(du("t")));
    EXPECT_THAT(keep("t/a"), Optional(du("t/a")));
    EXPECT_EQ(foldersRead(), 2);
}

TEST_F(MeasuredTreesTest, AFolderInsideOneThatWasReadIsAnsweredFromThere) {
    tree.file("t/a/deep/one", 70'000);
    tree.file("t/b/two", 90'000);
    keep("t");
    EXPECT_EQ(foldersRead(), 4);
    EXPECT_THAT(keep("t/a"), Optional(du("t/a")));
    EXPECT_THAT(follow("t/a/deep"), Optional(du("t/a/deep")));
    EXPECT_THAT(keep("t/b"), Optional(du("t/b")));
    EXPECT_EQ(foldersRead(), 4);
}

TEST_F(MeasuredTreesTest, AFolderAroundOthersDoesNotReadThemAgain) {
    tree.file("t/a/deep/one", 70'000);
    tree.file("t/b/two", 90'000);
    tree.file("t/three", 10'000);
    keep("t/a/deep");
    keep("t/b");
    EXPECT_EQ(foldersRead(), 2);
    EXPECT_THAT(keep("t"), Optional(du("t")));
    EXPECT_EQ(foldersRead(), 4);
    EXPECT_THAT(keep("t/a"), Optional(du("t/a")));
    EXPECT_THAT(keep(""), Optional(duBytes(tree.path())));
    EXPECT_EQ(foldersRead(), 5);
}

TEST_F(MeasuredTreesTest, AHardLinkCountsOnceInEachFolderThatHoldsOne) {
    tree.file("t/a/one", 300'000);
    tree.hardLink("t/a/again", "t/a/one");
    tree.hardLink("t/b/deep/other", "t/a/one");
    tree.file("t/b/own", 50'000);
    for (const bool outerFirst : {true, false}) {
        MeasuredTrees fresh;
        std::vector<std::string> places = {"t", "t/a", "t/b", "t/b/deep"};
        if (!outerFirst) std::ranges::reverse(places);
        for (const std::string& place : places)
            EXPECT_THAT(fresh.bytes(tree.url(place), false), Optional(du(place))) << place << outerFirst;
    }
}

TEST_F(MeasuredTreesTest, WhereALinkLiesRequestsThatFollowItReadForThemselves) {
    tree.file("outside/big", 500'000);
    tree.file("t/a/one", 70'000);
    tree.link("t/a/link", tree.path("outside"));
    tree.file("t/b/two", 20'000);
    EXPECT_THAT(keep("t"), Optional(du("t")));
    EXPECT_THAT(follow("t/b"), Optional(du("t/b", true)));
    EXPECT_EQ(foldersRead(), 3);
    EXPECT_THAT(follow("t/a"), Optional(du("t/a", true)));
    EXPECT_EQ(foldersRead(), 5);
    EXPECT_THAT(keep("t/a"), Optional(du("t/a")));
    EXPECT_THAT(follow("t"), Optional(du("t", true)));
    EXPECT_GT(*follow("t"), 500'000);
}

TEST_F(MeasuredTreesTest, ALinkIntoAFolderThatWasMeasuredCountsItOnce) {
    tree.file("t/a/one", 300'000);
    tree.link("t/b/file", tree.path("t/a/one"));
    tree.link("t/b/folder", tree.path("t/a"));
    follow("t/a");
    EXPECT_THAT(follow("t"), Optional(du("t", true)));
    EXPECT_EQ(foldersRead(), 4); // the link was met in time, so nothing had to be done over
    EXPECT_THAT(follow("t/b"), Optional(du("t/b", true)));
}

TEST_F(MeasuredTreesTest, ALinkInsideAFolderThatWasMeasuredIsFollowedFromAround) {
    tree.file("t/other/one", 300'000);
    tree.link("t/a/link", "../other");
    tree.file("t/b/two", 30'000);
    follow("t/a");
    follow("t/b");
    EXPECT_THAT(follow("t"), Optional(du("t", true)));
}

TEST_F(MeasuredTreesTest, AFolderReachedOnlyByALinkIsNotAnsweredAsPartOfTheTree) {
    tree.file("outside/deep/one", 300'000);
    tree.file("t/own", 10'000);
    tree.link("t/link", tree.path("outside"));
    follow("t");
    EXPECT_THAT(keep("t/link/deep"), Optional(du("outside/deep")));
    EXPECT_THAT(keep("outside"), Optional(du("outside")));
}

TEST_F(MeasuredTreesTest, SmallFoldersAreToldAndWhatIsNoFolderIsNot) {
    tree.folder("t/empty");
    tree.file("t/file", 10'000);
    tree.link("t/link", "empty");
    EXPECT_THAT(keep("t/empty"), Optional(du("t/empty")));
    EXPECT_THAT(keep("t/file"), Eq(std::nullopt));
    EXPECT_THAT(follow("t/link"), Eq(std::nullopt));
    EXPECT_THAT(keep("t/missing"), Eq(std::nullopt));
    EXPECT_THAT(trees.bytes(FileURL("relative"), false), Eq(std::nullopt));
}

TEST_F(MeasuredTreesTest, AnotherFolderAtTheSamePathIsMeasuredAnew) {
    tree.file("t/a/one", 300'000);
    keep("t");
    std::filesystem::remove_all(tree.path("t/a"));
    tree.file("t/a/one", 20'000);
    EXPECT_THAT(keep("t/a"), Optional(du("t/a")));
    std::filesystem::remove_all(tree.path("t"));
    tree.file("t/other", 40'000);
    EXPECT_THAT(keep("t"), Optional(du("t")));
}

TEST_F(MeasuredTreesTest, AFolderThatCannotBeReadCountsAsTheProgramHasIt) {
    tree.file("t/a/one", 70'000);
    tree.file("t/shut/one", 70'000);
    tree.giveAway();
    tree.mode("t/shut", 0);
    const ShellResult shared =
        runTreeTool(Rights::ordinaryUser, {"shared", tree.path("t"), tree.path("t/shut"), tree.path("t/a")});
    std::ostringstream expected;
    for (const char* place : {"t", "t/shut", "t/a"}) {
        std::vector<std::string> words = treeToolWords(Rights::ordinaryUser, {});
        words.pop_back(); // the rights alone
        for (const std::string& word : {std::string("du"), std::string("-sk"), tree.path(place)})
            words.push_back(word);
        expected << std::stoll(runProgram(words).output) * 1024 << '\n';
    }
    tree.mode("t/shut", 0755);
    EXPECT_EQ(shared.output, expected.str());
}

TEST_F(MeasuredTreesTest, WhatIsMountedInsideIsMeasuredByItself) {
    if (const std::string why = whyNoOwnMounts(); !why.empty()) GTEST_SKIP() << why;
    tree.file("t/a/one", 70'000);
    tree.file("t/around/own", 20'000);
    tree.folder("t/around/bound");
    tree.folder("t/memory");
    tree.file("t/a/covered/below", 300'000); // seen through the bound folder alone
    const ShellResult run =
        runInOwnMounts(Rights::asStarted,
                       R"(mount -t tmpfs none "$1/a/covered"; mount --bind "$1/a" "$1/around/bound"
            mount -t tmpfs none "$1/memory"; head -c 200000 /dev/zero > "$1/memory/file"
            for order in "t around/bound a" "a around/bound memory around t" "around t memory"; do
                places=""; for place in $order; do places="$places $1/$place"; done
                places=$(echo "$places" | sed "s,$1/t\b,$1,g")
                tree_tool shared $places
                for place in $places; do tree_tool shared $place; done | sed 's/^/alone /'
            done)",
                       {tree.path("t")});
    ASSERT_EQ(run.status, 0) << run.errors;
    std::vector<std::string> together;
    std::vector<std::string> alone;
    std::istringstream lines(run.output);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("alone "))
            alone.push_back(line.substr(6));
        else
            together.push_back(line);
    }
    EXPECT_EQ(together.size(), 11U);
    EXPECT_EQ(together, alone);
}

/// A tree that takes a while to read.
void growLarge(const OddTree& tree) {
    for (int folder = 0; folder < 300; ++folder)
        for (int file = 0; file < 40; ++file)
            tree.file("large/" + std::to_string(folder) + "/" + std::to_string(file), 0);
}

TEST_F(MeasuredTreesTest, ManyWhoAskAtOnceShareOneReading) {
    const OddTree memory(OddTree::Place::memory);
    growLarge(memory);
    const std::int64_t expected = duBytes(memory.path("large"));
    std::vector<std::thread> threads;
    std::atomic<int> ready{0};
    std::atomic<int> right{0};
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&] {
            ++ready;
            while (ready < 8) std::this_thread::yield();
            right += trees.bytes(memory.url("large"), false) == std::optional(expected) ? 1 : 0;
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(right, 8);
    EXPECT_EQ(foldersRead(), 301);
}

/// While it lives, a signal holds the thread that it is sent to, wherever that is: until it may go, but no
/// longer than two seconds.
class Holding {
public:
    Holding() {
        isHeld_ = false;
        mayGo_ = false;
        struct sigaction action = {};
        action.sa_handler = [](int) {
            const int before = errno;
            isHeld_ = true;
            for (int wait = 0; !mayGo_ && wait < 4'000; ++wait) ::usleep(500);
            isHeld_ = false;
            errno = before;
        };
        action.sa_flags = SA_RESTART;
        ::sigaction(SIGUSR1, &action, &before_);
    }
    Holding(const Holding&) = delete;
    Holding& operator=(const Holding&) = delete;
    ~Holding() { ::sigaction(SIGUSR1, &before_, nullptr); }

    void hold(std::thread& thread) {
        ::pthread_kill(thread.native_handle(), SIGUSR1);
        for (int wait = 0; !isHeld_ && wait < 1'000; ++wait) ::usleep(500);
    }
    bool isHeld() const { return isHeld_; }
    void letGo() { mayGo_ = true; }

private:
    static inline std::atomic<bool> isHeld_;
    static inline std::atomic<bool> mayGo_;
    struct sigaction before_ = {};
};

/// Whether a request for a part leaves when it is cancelled although the reading of the whole, which it waits
/// for, gets no further. False also where that was held too early or too late and there was nothing to wait
/// for.
bool leavesWhileOneReads(const OddTree& tree) {
    Holding holding;
    MeasuredTrees trees;
    std::thread reader([&] { trees.bytes(tree.url("large"), false); });
    std::this_thread::sleep_for(std::chrono::microseconds(500));
    holding.hold(reader);
    const StopSource source;
    std::thread canceller([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        source.requestStop();
    });
    const CurrentTaskScope scope(source.token());
    const auto answer = trees.bytes(tree.url("large/0"), false);
    const bool inTime = holding.isHeld();
    holding.letGo();
    canceller.join();
    reader.join();
    return !answer && inTime;
}

TEST_F(MeasuredTreesTest, WhoIsCancelledStopsWaiting) {
    const OddTree memory(OddTree::Place::memory);
    growLarge(memory);
    bool leaves = false;
    for (int attempt = 0; attempt < 10 && !leaves; ++attempt) leaves = leavesWhileOneReads(memory);
    EXPECT_TRUE(leaves);
}

TEST_F(MeasuredTreesTest, WhoWaitsForACancelledReadingReadsForItself) {
    const OddTree tree(OddTree::Place::memory);
    growLarge(tree);
    const std::int64_t whole = duBytes(tree.path("large"));
    const std::int64_t part = duBytes(tree.path("large/7"));
    for (int attempt = 0; attempt < 10; ++attempt) {
        MeasuredTrees fresh;
        const StopSource source;
        std::thread reader([&] {
            const CurrentTaskScope scope(source.token());
            fresh.bytes(tree.url("large"), false);
        });
        std::thread waiter([&] { EXPECT_THAT(fresh.bytes(tree.url("large/7"), false), Optional(part)); });
        std::thread second([&] { EXPECT_THAT(fresh.bytes(tree.url("large"), false), Optional(whole)); });
        std::this_thread::sleep_for(std::chrono::microseconds(300 * attempt));
        source.requestStop();
        reader.join();
        waiter.join();
        second.join();
    }
}

class NoEarlier final : public EarlierTrees {
public:
    bool isRoot(const FolderIdentity&) override { return false; }
    std::shared_ptr<const TreeRecord> recordOf(const FolderIdentity&) override { return nullptr; }
};

TEST_F(MeasuredTreesTest, BeyondItsBudgetAReadingKeepsOnlyItsOwnSum) {
    for (int folder = 0; folder < 100; ++folder) tree.file("t/" + std::to_string(folder) + "/file", 5'000);
    tree.hardLink("t/1/again", "t/0/file");
    const auto read = [&](RecordingVisitor::Budgets& budgets) {
        NoEarlier none;
        RecordingVisitor visitor(false, none, budgets);
        EXPECT_EQ(walkTree(tree.url("t"), visitor), WalkOutcome::finished);
        const auto record = visitor.takeRecord();
        EXPECT_THAT(visitor.bytes(record.get()), Optional(du("t")));
        return record;
    };
    RecordingVisitor::Budgets ample{RecordBudget(1'000), RecordBudget(1'000)};
    const auto kept = read(ample);
    ASSERT_TRUE(kept);
    EXPECT_EQ(kept->folders(), 101U);
    EXPECT_EQ(ample.folders.left(), 1'000 - 101); // what was not needed is given back
    EXPECT_EQ(ample.sightings.left(), 1'000 - 2);
    RecordingVisitor::Budgets fewFolders{RecordBudget(90), RecordBudget(1'000)};
    EXPECT_FALSE(read(fewFolders));
    EXPECT_EQ(fewFolders.folders.left(), 90);
    RecordingVisitor::Budgets fewSightings{RecordBudget(1'000), RecordBudget(1)};
    EXPECT_FALSE(read(fewSightings));
    EXPECT_EQ(fewSightings.sightings.left(), 1);
}

TEST(SharedSizeCalculator, ForACancelledTaskNothingIsMeasuredAndNoProgramStarted) {
    const OddTree tree;
    tree.file("t/one", 300'000);
    const SharedSizeCalculator shared;
    const std::int64_t started = childrenStarted();
    {
        const StopSource source;
        source.requestStop();
        const CurrentTaskScope scope(source.token());
        EXPECT_EQ(shared.size(tree.url("t"), false), 0);
    }
    EXPECT_EQ(childrenStarted(), started);
    EXPECT_EQ(shared.size(tree.url("t"), false), duBytes(tree.path("t")));
}

TEST(SharedSizeCalculator, GivesTheFiguresOfTheProgramAndStartsNone) {
    const OddTree tree;
    tree.file("t/a/one", 300'000);
    tree.folder("t/empty");
    tree.file("outside/big", 400'000);
    tree.link("t/a/link", tree.path("outside"));
    const SharedSizeCalculator shared;
    const std::int64_t started = childrenStarted();
    std::vector<std::int64_t> answers;
    for (const char* place : {"t", "t/a", "t/empty", "t/a/one", "t/a/link"}) {
        answers.push_back(shared.size(tree.url(place), false));
        answers.push_back(shared.linkAwareSize(tree.url(place)));
    }
    answers.push_back(shared.size(tree.url("t/a"), true));
    answers.push_back(shared.size(tree.url("t/missing"), false));
    EXPECT_EQ(childrenStarted(), started);
    std::vector<std::int64_t> expected;
    for (const char* place : {"t", "t/a", "t/empty", "t/a/one", "t/a/link"})
        expected.insert(expected.end(), 2, duBytes(tree.path(place)));
    expected.push_back(duBytes(tree.path("t/a"), true));
    expected.push_back(0);
    // A link's own figure may be nothing, and then its target's folder is asked of the program.
    EXPECT_EQ(answers, expected);
}

} // namespace
} // namespace vesko
