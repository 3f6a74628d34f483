#include "execution/Remover.h"

#include "concurrency/StopToken.h"
#include "platform/OddTree.h"
#include "platform/TreeToolRun.h"
#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace vesko {
namespace {

using ::testing::AllOf;
using ::testing::Eq;
using ::testing::Field;
using ::testing::HasSubstr;
using ::testing::Optional;
using ::testing::StartsWith;

/// Files beside the victim that must be the very same afterwards.
class Canaries {
public:
    explicit Canaries(const OddTree& tree) : tree_(tree) {
        tree_.text("canary", "alive");
        tree_.text("outside/canary", "alive too");
        inodes_[0] = tree_.inode("canary");
        inodes_[1] = tree_.inode("outside/canary");
    }
    void expectAlive() const {
        EXPECT_EQ(tree_.read("canary"), "alive");
        EXPECT_EQ(tree_.read("outside/canary"), "alive too");
        ASSERT_TRUE(tree_.has("canary") && tree_.has("outside/canary"));
        EXPECT_EQ(tree_.inode("canary"), inodes_[0]);
        EXPECT_EQ(tree_.inode("outside/canary"), inodes_[1]);
    }

private:
    const OddTree& tree_;
    std::uint64_t inodes_[2];
};

/// Every test runs with the rights that the tests have, which may be root's, and as an ordinary user.
class Remover : public ::testing::TestWithParam<Rights> {
protected:
    ShellResult remove(const std::string& path) const { return runTreeTool(GetParam(), {"remove", path}); }

    const OddTree tree;
    const Canaries canaries{tree};
};
INSTANTIATE_TEST_SUITE_P(Rights, Remover, ::testing::Values(Rights::asStarted, Rights::ordinaryUser),
                         [](const auto& info) {
                             return info.param == Rights::asStarted ? "AsStarted" : "AsOrdinaryUser";
                         });

TEST_P(Remover, TakesAFolderAwayWithEverythingInIt) {
    tree.file("victim/a/b/c", 10'000);
    tree.file("victim/.hidden");
    tree.folder("victim/empty");
    tree.link("victim/dangling", "nowhere");
    tree.pipe("victim/pipe");
    tree.socket("victim/socket");
    tree.giveAway();
    const std::int64_t bytes = duBytes(tree.path("victim"));
    EXPECT_EQ(remove(tree.path("victim")).output, "gone " + std::to_string(bytes) + " 9\n");
    EXPECT_FALSE(tree.has("victim"));
    canaries.expectAlive();
}

TEST_P(Remover, TakesASingleFileAway) {
    tree.file("victim");
    tree.giveAway();
    EXPECT_EQ(remove(tree.path("victim")).output, "gone 4096 1\n");
    EXPECT_FALSE(tree.has("victim"));
    canaries.expectAlive();
}

TEST_P(Remover, TakesALinkAwayAndLeavesItsTarget) {
    tree.giveAway();
    for (const char* ending : {"", "/", "//", "/.", "/./", "/./."}) {
        tree.link("victim", "outside");
        tree.giveAway();
        EXPECT_THAT(remove(tree.path("victim") + ending).output, StartsWith("gone")) << ending;
        EXPECT_FALSE(tree.has("victim")) << ending;
        canaries.expectAlive();
    }
}

TEST_P(Remover, LeavesTheTargetsOfLinksInside) {
    tree.link("victim/relative", "../outside");
    tree.link("victim/absolute", tree.path("outside/canary"));
    tree.link("victim/deep/up", "../..");
    tree.hardLink("victim/same", "canary");
    tree.giveAway();
    EXPECT_THAT(remove(tree.path("victim")).output, StartsWith("gone"));
    EXPECT_FALSE(tree.has("victim"));
    canaries.expectAlive();
}

TEST_P(Remover, RefusesAWayThatLeadsThroughALink) {
    tree.file("outside/item/content");
    tree.link("way", "outside");
    tree.giveAway();
    EXPECT_THAT(remove(tree.path("way/item")).output, StartsWith("changed"));
    EXPECT_TRUE(tree.has("outside/item/content"));
    canaries.expectAlive();
}

TEST_P(Remover, SaysThatAMissingItemIsNotThere) {
    tree.giveAway();
    EXPECT_EQ(remove(tree.path("missing")).output, "notFound 2 " + tree.path("missing") + "\n");
    EXPECT_THAT(remove(tree.path("missing/deeper")).output, StartsWith("notFound"));
    EXPECT_THAT(remove(tree.path("canary/below")).output, StartsWith("notFound"));
    canaries.expectAlive();
}

TEST_P(Remover, RemovesNamesOfEveryKind) {
    const std::string longest(255, 'n');
    for (const std::string& name :
         {std::string("\xff\xfe\x80"), std::string("line\nbreak"), std::string("-rf"), std::string("--"),
          std::string(" "), std::string("*"), longest}) {
        tree.file("victim/" + name + "/" + name);
        tree.file(name);
    }
    tree.giveAway();
    EXPECT_THAT(remove(tree.path("victim")).output, StartsWith("gone"));
    EXPECT_FALSE(tree.has("victim"));
    for (const std::string& name : {std::string("\xff\xfe\x80"), std::string("line\nbreak"), longest}) {
        EXPECT_THAT(remove(tree.path(name)).output, StartsWith("gone"));
        EXPECT_FALSE(tree.has(name));
    }
    EXPECT_TRUE(tree.has("-rf"));
    canaries.expectAlive();
}

TEST_P(Remover, CountsTheBytesOfAHardLinkWithItsLastName) {
    tree.file("victim/one", 1'000'000);
    tree.hardLink("victim/two", "victim/one");
    tree.file("victim/shared", 2'000'000);
    tree.hardLink("outside/shared", "victim/shared");
    tree.giveAway();
    const std::int64_t expected = duBytes(tree.path("victim")) - duBytes(tree.path("outside/shared"));
    EXPECT_EQ(remove(tree.path("victim")).output, "gone " + std::to_string(expected) + " 4\n");
    canaries.expectAlive();
}

TEST_P(Remover, NeverEntersWhatIsMountedInside) {
    if (const std::string why = whyNoOwnMounts(); !why.empty()) GTEST_SKIP() << why;
    tree.file("victim/before");
    tree.folder("victim/bound");
    tree.folder("victim/nested/tmpfs");
    tree.file("victim/nested/file");
    tree.file("victim/zz/after");
    tree.giveAway();
    const ShellResult found =
        runInOwnMounts(GetParam(),
                       "mount --bind \"$1/outside\" \"$1/victim/bound\"\n"
                       "mount -t tmpfs none \"$1/victim/nested/tmpfs\"\n"
                       "chmod 777 \"$1/victim/nested/tmpfs\"\n"
                       "echo alive > \"$1/victim/nested/tmpfs/canary\"\n"
                       "mount --bind \"$1/canary\" \"$1/victim/nested/file\"\n"
                       "tree_tool remove \"$1/victim\" || true\n"
                       "cat \"$1/victim/nested/tmpfs/canary\" \"$1/victim/bound/canary\"\n",
                       {tree.path()});
    EXPECT_THAT(found.output, StartsWith("mounted ")) << found.errors;
    EXPECT_THAT(found.output, HasSubstr("alive\nalive too"));
    EXPECT_FALSE(tree.has("victim/before"));
    EXPECT_FALSE(tree.has("victim/zz"));
    EXPECT_TRUE(tree.has("victim/nested/file"));
    canaries.expectAlive();
}

TEST_P(Remover, DoesNotRemoveAnItemThatIsAMountItself) {
    if (const std::string why = whyNoOwnMounts(); !why.empty()) GTEST_SKIP() << why;
    tree.folder("victim");
    tree.giveAway();
    const ShellResult found = runInOwnMounts(GetParam(),
                                             "mount --bind \"$1/outside\" \"$1/victim\"\n"
                                             "tree_tool remove \"$1/victim\" || true\n",
                                             {tree.path()});
    EXPECT_THAT(found.output, StartsWith("mounted 16 " + tree.path("victim"))) << found.errors;
    canaries.expectAlive();
}

TEST_P(Remover, RemovesAnItemThatLiesOnAnotherVolumeBelowTheHomeFolder) {
    if (const std::string why = whyNoOwnMounts(); !why.empty()) GTEST_SKIP() << why;
    tree.folder("home/.cache");
    tree.giveAway();
    const ShellResult found = runInOwnMounts(GetParam(),
                                             "mount -t tmpfs none \"$1/home/.cache\"\n"
                                             "mkdir -p \"$1/home/.cache/item/inside\"\n"
                                             "chmod -R 777 \"$1/home/.cache\"\n"
                                             "HOME=\"$1/home\" tree_tool remove \"$1/home/.cache/item\"\n"
                                             "test ! -e \"$1/home/.cache/item\"\n",
                                             {tree.path()});
    EXPECT_EQ(found.status, 0) << found.output << found.errors;
    canaries.expectAlive();
}

TEST_P(Remover, GoesOnPastAFolderWithoutPermission) {
    tree.file("victim/closed/inside");
    tree.file("victim/aa/one");
    tree.file("victim/zz/two");
    tree.giveAway();
    tree.mode("victim/closed", 0555);
    const ShellResult found = remove(tree.path("victim"));
    if (GetParam() == Rights::asStarted && ::geteuid() == 0) {
        EXPECT_THAT(found.output, StartsWith("gone"));
    } else {
        EXPECT_EQ(found.output, "permission 13 " + tree.path("victim/closed/inside") + "\n");
        EXPECT_TRUE(tree.has("victim/closed/inside"));
        EXPECT_FALSE(tree.has("victim/aa"));
        EXPECT_FALSE(tree.has("victim/zz"));
    }
    canaries.expectAlive();
}

TEST_P(Remover, RemovesAnEmptyFolderThatCannotBeRead) {
    tree.folder("victim/closed");
    tree.mode("victim/closed", 0);
    tree.giveAway();
    EXPECT_THAT(remove(tree.path("victim")).output, StartsWith("gone"));
    EXPECT_FALSE(tree.has("victim"));
}

TEST_P(Remover, SaysThatAnEntryIsMarkedAsNotToBeChanged) {
    if (::geteuid() != 0) GTEST_SKIP() << "marking a file needs root";
    tree.file("victim/marked");
    tree.file("victim/other");
    tree.giveAway();
    if (runProgram({"chattr", "+i", tree.path("victim/marked")}).status != 0)
        GTEST_SKIP() << "this file system does not know the mark";
    const ShellResult found = remove(tree.path("victim"));
    runProgram({"chattr", "-i", tree.path("victim/marked")});
    EXPECT_EQ(found.output, "immutable 1 " + tree.path("victim/marked") + "\n");
    EXPECT_FALSE(tree.has("victim/other"));
    EXPECT_TRUE(tree.has("victim/marked"));
    canaries.expectAlive();
}

TEST_P(Remover, SaysThatAVolumeCannotBeWritten) {
    if (const std::string why = whyNoOwnMounts(); !why.empty()) GTEST_SKIP() << why;
    tree.file("volume/victim/inside");
    tree.giveAway();
    const ShellResult found = runInOwnMounts(GetParam(),
                                             "mount --bind \"$1/volume\" \"$1/volume\"\n"
                                             "mount -o remount,ro,bind \"$1/volume\"\n"
                                             "tree_tool remove \"$1/volume/victim\" || true\n",
                                             {tree.path()});
    EXPECT_EQ(found.output, "readOnly 30 " + tree.path("volume/victim/inside") + "\n") << found.errors;
    EXPECT_TRUE(tree.has("volume/victim/inside"));
    canaries.expectAlive();
}

TEST_P(Remover, TriesNothingTwiceThatCannotGo) {
    if (const std::string why = whyNoInjection(); !why.empty()) GTEST_SKIP() << why;
    for (int i = 0; i < 50; ++i) tree.file("victim/" + std::to_string(i));
    tree.giveAway();
    std::vector<std::string> words = {"strace", "-f",
                                      "-o",     tree.path("log"),
                                      "-P",     tree.path("victim"),
                                      "-e",     "trace=unlinkat",
                                      "-e",     "inject=unlinkat:error=EACCES"};
    const std::vector<std::string> tool = treeToolWords(Rights::asStarted, {"remove", tree.path("victim")});
    words.insert(words.end(), tool.begin(), tool.end());
    EXPECT_THAT(runProgram(words).output, StartsWith("permission 13 "));
    const std::string log = tree.read("log");
    std::size_t tries = 0;
    for (std::size_t at = 0; (at = log.find("unlinkat(", at)) != std::string::npos; ++at) ++tries;
    EXPECT_EQ(tries, 50U);
}

TEST_P(Remover, TakesAwayAChainOf20000FoldersUnderSmallLimits) {
    const OddTree deep(OddTree::Place::memory);
    deep.text("canary", "alive");
    deep.chain("victim", "d", 20'000, 100, 50);
    deep.giveAway();
    std::vector<std::string> words = {"sh", "-c", "ulimit -n 256 && ulimit -s 1024 && exec \"$@\"", "sh"};
    const std::vector<std::string> tool = treeToolWords(GetParam(), {"remove", deep.path("victim")});
    words.insert(words.end(), tool.begin(), tool.end());
    const ShellResult found = runProgram(words);
    EXPECT_THAT(found.output, StartsWith("gone")) << found.errors;
    EXPECT_FALSE(deep.has("victim"));
    EXPECT_EQ(deep.read("canary"), "alive");
}

TEST_P(Remover, TakesAwayFiftyTwoLevelsOfNamesOf200Bytes) {
    tree.chain("victim", std::string(200, 'n'), 52, 5'000, 10);
    tree.giveAway();
    EXPECT_THAT(remove(tree.path("victim")).output, StartsWith("gone"));
    EXPECT_FALSE(tree.has("victim"));
    canaries.expectAlive();
}

TEST_P(Remover, WorksWithVeryFewDescriptors) {
    for (int i = 0; i < 20; ++i) tree.file("victim/" + std::to_string(i) + "/a/b/c/d/e/f/g/h/i/j/k/file");
    tree.giveAway();
    std::vector<std::string> words = {"sh", "-c", "ulimit -n 12 && exec \"$@\"", "sh"};
    const std::vector<std::string> tool = treeToolWords(GetParam(), {"remove", tree.path("victim")});
    words.insert(words.end(), tool.begin(), tool.end());
    EXPECT_THAT(runProgram(words).output, StartsWith("gone"));
    EXPECT_FALSE(tree.has("victim"));
}

TEST_P(Remover, KeepsTheHomeFolderAndWhatIsAboveIt) {
    tree.file("users/me/precious");
    tree.file("users/other/precious");
    tree.link("linked", "users/me");
    tree.giveAway();
    for (const char* home : {"users/me", "linked"}) {
        for (const char* victim : {"users/me", "users", "users/me/."}) {
            const ShellResult found =
                runProgram({"env", "HOME=" + tree.path(home), VESKO_TREE_TOOL, "remove", tree.path(victim)});
            EXPECT_THAT(found.output, StartsWith("busy 16 ")) << home << ' ' << victim;
            EXPECT_TRUE(tree.has("users/me/precious"));
        }
    }
    EXPECT_THAT(remove("/").output, StartsWith("busy 16 /"));
    canaries.expectAlive();
}

TEST_P(Remover, ReachesAHomeFolderThroughALink) {
    tree.file("users/me/item/inside");
    tree.link("home", "users/me");
    tree.giveAway();
    std::vector<std::string> words = {"env", "HOME=" + tree.path("home")};
    const std::vector<std::string> tool = treeToolWords(GetParam(), {"remove", tree.path("home/item")});
    words.insert(words.end(), tool.begin(), tool.end());
    EXPECT_THAT(runProgram(words).output, StartsWith("gone"));
    EXPECT_FALSE(tree.has("users/me/item"));
    canaries.expectAlive();
}

TEST_P(Remover, RefusesPathsThatNameNoItem) {
    tree.file("victim/inside");
    tree.giveAway();
    for (const std::string& path :
         {std::string(), std::string("victim"), tree.path("victim/../outside"), tree.path("victim/..")})
        EXPECT_THAT(remove(path).output, StartsWith("other 22 ")) << path;
    EXPECT_TRUE(tree.has("victim/inside"));
    canaries.expectAlive();
}

TEST(RemoverInProcess, TakesVanishedEntriesForRemoved) {
    const OddTree tree;
    for (int i = 0; i < 3'000; ++i)
        tree.file("victim/" + std::to_string(i % 30) + "/" + std::to_string(i), 0);
    std::thread other([&] {
        for (int i = 2'999; i >= 0; --i)
            ::unlink(tree.path("victim/" + std::to_string(i % 30) + "/" + std::to_string(i)).c_str());
    });
    EXPECT_THAT(removeForGood(tree.url("victim")), Eq(std::nullopt));
    other.join();
    EXPECT_FALSE(tree.has("victim"));
}

TEST(RemoverInProcess, LeavesAFolderThatIsFilledFasterThanItCanEmptyIt) {
    const OddTree tree(OddTree::Place::memory);
    tree.text("canary", "alive");
    tree.file("victim/first");
    std::atomic<bool> done{false};
    std::atomic<int> made{0};
    std::thread other([&] {
        const int folder = ::open(tree.path("victim").c_str(), O_RDONLY | O_DIRECTORY);
        for (int i = 0; !done; ++i) {
            const int file = ::openat(folder, std::to_string(i).c_str(), O_CREAT | O_WRONLY, 0644);
            if (file < 0) break; // the folder is gone: this time the removal was faster
            ::close(file);
            ++made;
        }
        ::close(folder);
    });
    while (made < 10) std::this_thread::yield();
    const auto begin = std::chrono::steady_clock::now();
    const auto failure = removeForGood(tree.url("victim"));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(60));
    done = true;
    other.join();
    if (failure) {
        EXPECT_EQ(failure->kind, RemovalFailureKind::changed);
        EXPECT_EQ(failure->path, tree.url("victim"));
        EXPECT_TRUE(tree.has("victim"));
    } else {
        EXPECT_FALSE(tree.has("victim"));
    }
    EXPECT_EQ(tree.read("canary"), "alive");
}

TEST(RemoverInProcess, TellsItsProgressFiveTimesASecond) {
    const OddTree tree(OddTree::Place::memory);
    for (int i = 0; i < 60'000; ++i) tree.file("victim/" + std::to_string(i), 0);
    std::vector<std::chrono::steady_clock::time_point> told;
    std::int64_t lastEntries = -1;
    told.push_back(std::chrono::steady_clock::now());
    const auto failure = removeForGood(tree.url("victim"), [&](std::int64_t bytes, std::int64_t entries) {
        EXPECT_GE(bytes, 0);
        EXPECT_GT(entries, lastEntries);
        lastEntries = entries;
        told.push_back(std::chrono::steady_clock::now());
        // Whoever listens slowly is not told more often for it.
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    });
    EXPECT_THAT(failure, Eq(std::nullopt));
    EXPECT_EQ(lastEntries, 60'001);
    for (std::size_t i = 1; i < told.size(); ++i)
        EXPECT_LT(told[i] - told[i - 1], std::chrono::milliseconds(200)) << i;
}

TEST(RemoverInProcess, StopsWhenAsked) {
    const OddTree tree;
    for (int i = 0; i < 100; ++i) tree.file("victim/" + std::to_string(i) + "/file");
    StopSource stop;
    stop.requestStop();
    EXPECT_THAT(
        removeForGood(tree.url("victim"), {}, stop.token()),
        Optional(AllOf(Field(&RemovalFailure::kind, RemovalFailureKind::other),
                       Field(&RemovalFailure::code, std::make_error_code(std::errc::operation_canceled)))));
    EXPECT_TRUE(tree.has("victim/99/file"));
}

TEST(RemoverInProcess, AnItemRemovedBeforeIsNotThere) {
    const OddTree tree;
    tree.file("parent/child/file");
    EXPECT_THAT(removeForGood(tree.url("parent")), Eq(std::nullopt));
    std::int64_t freed = -1;
    EXPECT_THAT(
        removeForGood(tree.url("parent/child"), [&](std::int64_t bytes, std::int64_t) { freed = bytes; }),
        Optional(Field(&RemovalFailure::kind, RemovalFailureKind::notFound)));
    EXPECT_LE(freed, 0);
}

} // namespace
} // namespace vesko
