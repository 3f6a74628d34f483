#include "platform/OddTree.h"
#include "platform/ShellCommand.h"
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vesko {
namespace {

using ::testing::HasSubstr;

/// The real executor and the real runner, with programs of the test's own at the tools' paths: in a mount
/// namespace of its own /usr/bin, /usr/local/bin and /opt are covered for that process alone. Each stand-in
/// writes its arguments down, one call a line.
class StandInTools : public ::testing::Test {
protected:
    void SetUp() override {
        if (::geteuid() != 0) GTEST_SKIP() << "mounting needs root";
        if (runProgram({"unshare", "-m", "mount", "-t", "tmpfs", "none", "/mnt"}).status != 0)
            GTEST_SKIP() << "no mounts here";
        for (const char* folder : {"usr-bin", "usr-work", "local", "opt/homebrew/bin"}) memory.folder(folder);
        memory.text("calls", "");
    }
    void standIn(const std::string& relative, const std::string& body) {
        memory.text(relative, "#!/bin/sh\necho \"$0 $*\" >> " + memory.path("calls") + "\n" + body + "\n");
        memory.mode(relative, 0755);
    }
    std::string deleted(const std::string& path, const std::string& key) {
        const std::string script = "set -e\n"
                                   "mount -t overlay overlay -o \"lowerdir=/usr/bin,upperdir=$1/usr-bin,"
                                   "workdir=$1/usr-work\" /usr/bin\n"
                                   "mount --bind \"$1/local\" /usr/local/bin\n"
                                   "mount --bind \"$1/opt\" /opt\n"
                                   "exec \"$2\" \"$3\" \"$4\"\n";
        const ShellResult result = runProgram(
            {"unshare", "-m", "sh", "-c", script, "sh", memory.path(), VESKO_EXECUTOR_TOOL, path, key});
        return result.output.empty() ? result.errors : result.output;
    }
    std::string calls() const { return memory.read("calls"); }

    const OddTree memory{OddTree::Place::memory};
    const OddTree tree;
};

TEST_F(StandInTools, AnImageGoesThroughTheTool) {
    standIn("local/docker", "exit 0");
    EXPECT_EQ(deleted("/none", "docker:image:abc"), "deleted\n");
    EXPECT_EQ(calls(), "/usr/local/bin/docker info\n/usr/local/bin/docker rmi -f abc\n");
}

TEST_F(StandInTools, AnImageThatAContainerUsesGivesTheFullCommand) {
    standIn("local/docker", "test \"$1\" = info");
    EXPECT_EQ(deleted("/none", "docker:image:abc"), "docker /usr/local/bin/docker rmi -f abc: 1\n");
}

TEST_F(StandInTools, ADockerThatDisappearedIsNotAvailable) {
    tree.file("volume/inside");
    EXPECT_EQ(deleted(tree.path("volume"), "docker:volume:data"), "docker not available\n");
    EXPECT_TRUE(tree.has("volume/inside"));
}

TEST_F(StandInTools, TheOtherDockerIsTakenWhenTheServiceOfTheUsualOneIsDown) {
    standIn("local/docker", "exit 1");
    standIn("opt/homebrew/bin/docker", "exit 0");
    EXPECT_EQ(deleted("/none", "docker:prune:buildcache"), "deleted\n");
    EXPECT_EQ(calls(), "/usr/local/bin/docker info\n/opt/homebrew/bin/docker info\n"
                       "/opt/homebrew/bin/docker builder prune -a -f\n");
}

TEST_F(StandInTools, ADeviceNeverTouchesItsFolderEvenWhenTheToolFails) {
    tree.file("device/inside");
    standIn("usr-bin/xcrun", "exit 164");
    EXPECT_EQ(deleted(tree.path("device"), "simulator:AB-12"), "simulator AB-12: 164\n");
    EXPECT_EQ(calls(), "/usr/bin/xcrun simctl delete AB-12\n");
    EXPECT_TRUE(tree.has("device/inside"));
}

TEST_F(StandInTools, ANameThatLooksLikeShellTextStaysOneArgument) {
    standIn("local/docker", "test \"$1\" = info || printf '%s|' \"$@\" >> \"$(dirname \"$0\")/arguments\"");
    EXPECT_EQ(deleted("/none", "docker:volume:$(touch /tmp/x); --all"), "deleted\n");
    EXPECT_EQ(memory.read("local/arguments"), "volume|rm|-f|$(touch /tmp/x); --all|");
}

} // namespace
} // namespace vesko
