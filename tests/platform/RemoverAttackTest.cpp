#include "execution/Remover.h"

#include "platform/OddTree.h"
#include "platform/TreeToolRun.h"
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <linux/fs.h>
#include <ostream>
#include <random>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ;

namespace vesko {
namespace {

using ::testing::AnyOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

/// A process that runs beside the test.
class Running {
public:
    explicit Running(const std::vector<std::string>& words, const std::string& output) {
        std::vector<char*> arguments;
        for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
        arguments.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_addopen(&actions, 1, output.c_str(), O_CREAT | O_WRONLY | O_TRUNC, 0666);
        if (::posix_spawnp(&process_, arguments[0], &actions, nullptr, arguments.data(), environ) != 0)
            process_ = -1;
        ::posix_spawn_file_actions_destroy(&actions);
    }
    ~Running() {
        if (process_ > 0) {
            ::kill(process_, SIGKILL);
            wait();
        }
    }
    pid_t process() const { return process_; }
    int wait() {
        int status = -1;
        if (process_ > 0) ::waitpid(process_, &status, 0);
        process_ = -1;
        return status;
    }
    bool hasEnded() {
        if (process_ <= 0) return true;
        if (::waitpid(process_, nullptr, WNOHANG) == 0) return false;
        process_ = -1;
        return true;
    }

private:
    pid_t process_ = -1;
};

pid_t onlyChildOf(pid_t process) {
    const std::string name = std::to_string(process);
    std::ifstream children("/proc/" + name + "/task/" + name + "/children");
    pid_t child = 0;
    children >> child;
    return child;
}

bool isHeldByTracer(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("State:")) return line.contains("(tracing stop)");
    return false;
}

/// Waits until the traced tool is held for longer than an ordinary stop lasts on a busy machine; false when
/// it ended before.
bool waitForDelay(Running& tracer) {
    int seen = 0;
    while (seen < 40) {
        if (tracer.hasEnded()) return false;
        const pid_t tool = onlyChildOf(tracer.process());
        seen = tool > 0 && isHeldByTracer(tool) ? seen + 1 : 0;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

struct Attack {
    const char* call; ///< the system call at whose begin the swap is made
    Rights rights;
};

std::string nameOf(const Attack& attack) {
    return std::string(attack.call) + (attack.rights == Rights::asStarted ? "AsStarted" : "AsOrdinaryUser");
}
void PrintTo(const Attack& attack, std::ostream* stream) { *stream << nameOf(attack); }

class RemoverUnderAttack : public ::testing::TestWithParam<Attack> {};
INSTANTIATE_TEST_SUITE_P(
    EveryCall, RemoverUnderAttack,
    ::testing::Values(Attack{"openat2", Rights::asStarted}, Attack{"unlinkat", Rights::asStarted},
                      Attack{"statx", Rights::asStarted}, Attack{"getdents64", Rights::asStarted},
                      Attack{"openat2", Rights::ordinaryUser}, Attack{"unlinkat", Rights::ordinaryUser},
                      Attack{"statx", Rights::ordinaryUser}, Attack{"getdents64", Rights::ordinaryUser}),
    [](const auto& info) { return nameOf(info.param); });

TEST_P(RemoverUnderAttack, AFolderSwappedForALinkLeadsNowhere) {
    if (const std::string why = whyNoInjection(); !why.empty()) GTEST_SKIP() << why;
    const OddTree tree;
    tree.folder("logs");
    tree.text("outside/canary", "alive");
    tree.text("outside/inner/canary", "alive too");
    tree.file("victim/sub/own");
    tree.file("victim/sub/inner/own");
    tree.link("swap", tree.path("outside"));
    // The build may lie in a folder that only its owner may enter.
    std::filesystem::copy_file(VESKO_TREE_TOOL, tree.path("tool"));
    tree.giveAway();
    const std::uint64_t inodes[] = {tree.inode("outside/canary"), tree.inode("outside/inner/canary")};

    // The call is held the first time that it is about the folder: by its name, or through its handle.
    std::vector<std::string> words;
    if (GetParam().rights == Rights::ordinaryUser && ::geteuid() == 0)
        words = {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"};
    const std::string call = GetParam().call;
    for (const std::string& word :
         {std::string("strace"), std::string("-f"), std::string("-o"), tree.path("logs/trace"),
          std::string("-P"), std::string("sub"), std::string("-P"), tree.path("victim/sub"),
          std::string("-e"), "trace=" + call, std::string("-e"),
          "inject=" + call + ":delay_enter=2000000:when=1", tree.path("tool"), std::string("remove"),
          tree.path("victim")})
        words.push_back(word);
    {
        Running tracer(words, tree.path("logs/output"));
        ASSERT_TRUE(waitForDelay(tracer)) << tree.read("logs/trace") << tree.read("logs/output");
        ASSERT_EQ(::syscall(SYS_renameat2, AT_FDCWD, tree.path("victim/sub").c_str(), AT_FDCWD,
                            tree.path("swap").c_str(), RENAME_EXCHANGE),
                  0);
        tracer.wait();
    }
    EXPECT_THAT(tree.read("logs/trace"), HasSubstr("(DELAYED)"));
    EXPECT_THAT(tree.read("logs/output"), AnyOf(StartsWith("gone"), StartsWith("changed")));
    EXPECT_EQ(tree.read("outside/canary"), "alive");
    EXPECT_EQ(tree.read("outside/inner/canary"), "alive too");
    EXPECT_EQ(tree.inode("outside/canary"), inodes[0]);
    EXPECT_EQ(tree.inode("outside/inner/canary"), inodes[1]);
    // What was swapped in is a link inside the victim, so it went, or the folder was told to have changed.
    if (tree.read("logs/output").starts_with("gone")) EXPECT_FALSE(tree.has("victim"));
}

TEST(RemoverKilled, LeavesOnlyLessOfTheVictimAndNothingElseChanged) {
    constexpr int files = 2'000;
    const OddTree tree(OddTree::Place::memory);
    tree.text("canary", "alive");
    const std::uint64_t inode = tree.inode("canary");
    std::mt19937 random(7);
    int killedInside = 0;
    for (int round = 0; round < 12; ++round) {
        for (int i = 0; i < files; ++i)
            tree.file("victim/" + std::to_string(i % 40) + "/" + std::to_string(i), 0);
        Running tool({VESKO_TREE_TOOL, "remove", tree.path("victim")}, tree.path("output"));
        std::this_thread::sleep_for(std::chrono::microseconds(1'000 + random() % 12'000));
        ::kill(tool.process(), SIGKILL);
        tool.wait();
        if (tree.has("victim")) ++killedInside;
        EXPECT_EQ(tree.read("canary"), "alive");
        EXPECT_EQ(tree.inode("canary"), inode);
        // What a measurement says now is true, and the next removal finishes the work.
        if (!tree.has("victim")) continue;
        const std::string measured =
            runTreeTool(Rights::asStarted, {"usage", tree.path("victim"), "2"}).output;
        EXPECT_EQ(measured, std::to_string(duBytes(tree.path("victim"))) + "\n");
        EXPECT_THAT(runTreeTool(Rights::asStarted, {"remove", tree.path("victim")}).output,
                    StartsWith("gone"));
        EXPECT_FALSE(tree.has("victim"));
    }
    EXPECT_GT(killedInside, 0);
}

} // namespace
} // namespace vesko
