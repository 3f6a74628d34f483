#include "base/ChildProcess.h"

#include "support/ScopedEnvironment.h"
#include "support/TempTree.h"
#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <future>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace vesko {
namespace {

using std::chrono::milliseconds;
using testing::TempTree;

std::optional<ChildResult> shell(const std::string& script) { return runChild("/bin/sh", {"-c", script}); }

std::size_t openDescriptors() {
    const std::filesystem::directory_iterator begin("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin, std::filesystem::directory_iterator()));
}

TEST(ChildProcess, AHundredMegabytesArriveWhole) {
    const auto result = shell("head -c 104857600 /dev/zero");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 0);
    EXPECT_EQ(result->standardOutput.size(), 104'857'600U);
}

TEST(ChildProcess, BytesStayBytes) {
    const auto result = shell("printf '\\000\\377x'");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->standardOutput, std::string("\0\xffx", 3));
}

TEST(ChildProcess, ALittleOnStandardErrorIsDropped) {
    const auto result = shell("echo complaint >&2; echo answer");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->standardOutput, "answer\n");
}

TEST(ChildProcess, AChildThatFillsStandardErrorBlocksUntilItIsEndedFromOutside) {
    const TempTree tree;
    const std::string pidFile = tree.path("pid");
    // More than any pipe holds; "exec" so that the number is that of the process which writes.
    auto result = std::async(std::launch::async, [&] {
        return shell("echo $$ > '" + pidFile + "'; exec head -c 4194304 /dev/zero >&2");
    });
    pid_t child = 0;
    while (child == 0) {
        std::this_thread::sleep_for(milliseconds(5));
        const std::string written = testing::bytesOf(FileURL(pidFile));
        if (written.ends_with('\n')) child = std::stoi(written);
    }
    EXPECT_EQ(result.wait_for(milliseconds(700)), std::future_status::timeout);
    ASSERT_EQ(::kill(child, 0), 0) << "the child ended by itself";

    ::kill(child, SIGKILL);

    const auto ended = result.get();
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->status, SIGKILL);
    EXPECT_EQ(ended->standardOutput, "");
}

TEST(ChildProcess, OutputIsReadToItsEndBeforeTheExitIsWaitedFor) {
    // The first process ends at once and leaves the pipe to another one, whose output still belongs to it.
    const auto result = shell("(sleep 0.3; echo late) & exit 5");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 5);
    EXPECT_EQ(result->standardOutput, "late\n");
}

TEST(ChildProcess, TheChildGetsNoFileOfOurs) {
    const TempTree tree;
    const int open = ::open(tree.file("secret").path().c_str(), O_RDONLY); // without close-on-exec
    ASSERT_GE(open, 0);
    const auto result = shell("ls /proc/self/fd");
    ::close(open);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->standardOutput, "0\n1\n2\n3\n"); // 3 is the listing itself
}

TEST(ChildProcess, NoDescriptorIsLeftOpen) {
    shell("true");
    const std::size_t before = openDescriptors();
    for (int i = 0; i < 20; ++i) {
        shell("echo x; echo y >&2");
        runChild("/no/such/tool", {});
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST(ChildProcess, EnvironmentAndFolderAreThoseOfTheProcess) {
    const testing::ScopedEnvironment marked("VESKO_TEST_MARK", "seen");
    const auto result = shell("printf '%s %s' \"$VESKO_TEST_MARK\" \"$(pwd -P)\"");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->standardOutput, "seen " + std::filesystem::current_path().string());
}

TEST(ChildProcess, StandardInputIsInherited) {
    const TempTree tree;
    const FileURL input = tree.file("input", "from outside");
    const int kept = ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 10);
    const int opened = ::open(input.path().c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_GE(::dup2(opened, STDIN_FILENO), 0);
    const auto result = shell("cat");
    if (kept >= 0) {
        ::dup2(kept, STDIN_FILENO);
        ::close(kept);
    } else {
        ::close(STDIN_FILENO);
    }
    ::close(opened);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->standardOutput, "from outside");
}

TEST(ChildProcess, SignalsThatTheCallerBlocksOrIgnoresStillReachTheChild) {
    sigset_t blocked;
    ::sigemptyset(&blocked);
    ::sigaddset(&blocked, SIGTERM);
    sigset_t before;
    ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const auto pipeBefore = ::signal(SIGPIPE, SIG_IGN);
    const auto byTerm = shell("kill -TERM $$; echo survived");
    const auto byPipe = shell("kill -PIPE $$; echo survived");
    ::signal(SIGPIPE, pipeBefore);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    ASSERT_TRUE(byTerm && byPipe);
    EXPECT_EQ(byTerm->status, SIGTERM);
    EXPECT_EQ(byPipe->status, SIGPIPE);
    EXPECT_EQ(byTerm->standardOutput + byPipe->standardOutput, "");
}

TEST(ChildProcess, ManyThreadsRunChildrenAtOnce) {
    std::atomic<int> right = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 16; ++i)
        threads.emplace_back([&right, i] {
            for (int turn = 0; turn < 5; ++turn) {
                const auto result = shell("echo " + std::to_string(i) + "; exit " + std::to_string(i));
                if (result && result->status == i && result->standardOutput == std::to_string(i) + "\n")
                    ++right;
            }
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(right, 80);
}

TEST(ChildProcess, ItWorksInAProcessWithClosedStandardFiles) {
    const pid_t tester = ::fork();
    if (tester == 0) {
        for (const int standard : {0, 1, 2}) ::close(standard);
        const auto result = runChild("/bin/sh", {"-c", "echo answer; echo complaint >&2; exit 6"});
        ::_exit(result && result->status == 6 && result->standardOutput == "answer\n" ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(tester, &status, 0), tester);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

} // namespace
} // namespace vesko
