#include "InotifyEventStream.h"

#include "InotifyQueue.h"
#include "platform/WatchedTree.h"
#include "support/MountNamespace.h"
#include <fstream>
#include <gmock/gmock.h>
#include <sched.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vesko {
namespace {

using namespace std::chrono_literals;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Ge;
using ::testing::IsEmpty;
using testing::shortly;

constexpr std::size_t limit = 10;
constexpr auto oneRound = 50ms;

/// Forty folders in four branches of depth ten below the root, and a limit that reaches a quarter of them.
class InotifyPollingTest : public testing::WatchedTree {
protected:
    static std::string branch(int number, int depth) {
        std::string folder = "branch-" + std::to_string(number);
        for (int i = 1; i < depth; ++i) folder += "/level-" + std::to_string(i);
        return folder;
    }
    void startAtTheLimit(std::size_t mostWatches = limit) {
        for (int number = 0; number < 4; ++number) tree.file(branch(number, 10) + "/file", "content");
        letTheClockTick();
        start({root()}, options(mostWatches, oneRound));
    }
    /// Of what is not watched the first rounds have a picture.
    void awaitRounds() const { std::this_thread::sleep_for(4 * oneRound); }
};

TEST_F(InotifyPollingTest, EveryKindOfChangeInEveryFolderIsToldAllTheSame) {
    startAtTheLimit();
    EXPECT_EQ(stream->figures().folders, 41U);
    EXPECT_EQ(stream->figures().watched, limit);
    for (int number = 0; number < 4; ++number)
        for (const int depth : {1, 5, 10}) {
            const std::string folder = branch(number, depth);
            heard.forgetAll();
            tree.file(folder + "/new", "x");
            ASSERT_TRUE(heard.waitFor({path(folder)})) << folder << " new file";
            awaitRounds();
            heard.forgetAll();
            std::ofstream(path(folder + "/new"), std::ios::app) << "more";
            ASSERT_TRUE(heard.waitFor({path(folder)})) << folder << " grown file";
            awaitRounds();
            EXPECT_THAT(heard.heard(), ElementsAre(path(folder)));
            heard.forgetAll();
            ASSERT_EQ(::unlink(path(folder + "/new").c_str()), 0);
            ASSERT_TRUE(heard.waitFor({path(folder)})) << folder << " removed file";
        }
}

TEST_F(InotifyPollingTest, WhatDoesNotChangeIsNotTold) {
    startAtTheLimit();
    awaitRounds();
    EXPECT_THAT(heard.heard(), IsEmpty());
    tree.file(branch(3, 10) + "/proof");
    EXPECT_TRUE(heard.waitFor({path(branch(3, 10))}));
}

TEST_F(InotifyPollingTest, FoldersMadeBeyondTheLimitAreToldAndPolled) {
    startAtTheLimit();
    const std::string made = branch(2, 10) + "/made";
    tree.folder(made + "/inner");
    EXPECT_TRUE(heard.waitFor({path(branch(2, 10)), path(made), path(made + "/inner")}));
    awaitRounds();
    heard.forgetAll();
    tree.file(made + "/inner/file");
    EXPECT_TRUE(heard.waitFor({path(made + "/inner")}));
    std::filesystem::remove_all(path(made));
    EXPECT_TRUE(becomes([](const auto& figures) { return figures.folders == 41; }));
}

TEST_F(InotifyPollingTest, FreedWatchesGoToFoldersThatHadNone) {
    startAtTheLimit();
    for (int number = 1; number < 4; ++number) std::filesystem::remove_all(path(branch(number, 1)));
    EXPECT_TRUE(
        becomes([](const auto& figures) { return figures.folders == 11 && figures.watched == limit; }));
    settle();
    tree.file(branch(0, 9) + "/file");
    tree.file(branch(0, 10) + "/second");
    EXPECT_TRUE(heard.waitFor({path(branch(0, 9)), path(branch(0, 10))}));
}

TEST_F(InotifyPollingTest, WithoutAnyWatchEverythingIsPolled) {
    startAtTheLimit(0);
    EXPECT_EQ(stream->figures().watched, 0U);
    tree.file(branch(0, 10) + "/new");
    rename(branch(1, 1), "renamed");
    EXPECT_TRUE(heard.waitFor({root(), path(branch(0, 10)), path("renamed/level-1")}));
}

/// Leaves this process without a queue to be had, and nobody else: the limit is that of a user namespace.
bool forbidQueues() {
    if (::unshare(CLONE_NEWUSER) != 0) return false;
    std::ofstream("/proc/sys/user/max_inotify_instances") << 0;
    return InotifyQueue().descriptor() < 0;
}

TEST_F(InotifyPollingTest, WithoutAQueueEverythingIsPolled) {
    constexpr const char* refused = "refused";
    const auto wrong = testing::inMountNamespace([&]() -> std::string {
        if (!forbidQueues()) return refused;
        startAtTheLimit();
        if (!stream || stream->figures().folders != 41) return "not all folders are known";
        if (stream->figures().watched != 0) return "something is watched";
        tree.file(branch(0, 10) + "/new");
        if (!heard.waitFor({path(branch(0, 10))})) return "nothing is told";
        stream.reset();
        return {};
    });
    if (!wrong || *wrong == refused) GTEST_SKIP() << "user namespaces are refused here";
    EXPECT_EQ(*wrong, "");
}

/// In a child process with a user namespace of its own, which has a limit of its own; the exit status says
/// how far it came.
TEST_F(InotifyPollingTest, WhatTheSystemItselfRefusesIsPolledAsWell) {
    enum Outcome : std::uint8_t { well, noNamespace, otherCount, notTold };
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        if (::unshare(CLONE_NEWUSER) != 0) ::_exit(noNamespace);
        std::ofstream file("/proc/sys/user/max_inotify_watches");
        if (!(file << limit << std::flush)) ::_exit(noNamespace);
        startAtTheLimit(100'000);
        if (stream->figures().folders != 41 || stream->figures().watched != limit) ::_exit(otherCount);
        tree.file(branch(2, 10) + "/new");
        if (!heard.waitFor({path(branch(2, 10))})) ::_exit(notTold);
        stream.reset();
        ::_exit(well);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == noNamespace) GTEST_SKIP() << "user namespaces are refused here";
    EXPECT_EQ(WEXITSTATUS(status), well);
}

TEST_F(InotifyPollingTest, AQuarterOfTheSystemsWatchesIsLeftToOthers) {
    std::ifstream file("/proc/sys/fs/inotify/max_user_watches");
    std::size_t allowed = 0;
    ASSERT_TRUE(file >> allowed);
    EXPECT_EQ(fairShareOfWatches(), allowed - allowed / 4);
}

TEST(InotifyOptions, WhatIsNotWatchedIsLookedAtAtLeastOnceAMinute) {
    EXPECT_LE(InotifyEventStream::Options{}.pollPeriod, 50s);
}

} // namespace
} // namespace vesko
