#include "core/FastDirectorySize.h"

#include "platform/OddTree.h"
#include "platform/TreeToolRun.h"
#include "platform/UsageSum.h"
#include <cstdlib>
#include <gmock/gmock.h>
#include <unistd.h>

namespace vesko {
namespace {

using ::testing::HasSubstr;
using ::testing::Optional;

/// One of everything that a naive sum gets wrong.
void growOracle(const OddTree& tree, bool withLinkToTheRootFolder) {
    tree.file("oracle/content", 10'000'000);
    tree.hardLink("oracle/again/content", "oracle/content");
    tree.sparse("oracle/sparse", std::int64_t{10} << 30);
    tree.preallocated("oracle/preallocated", 5 << 20);
    if (withLinkToTheRootFolder) tree.link("oracle/root", "/");
    tree.link("oracle/here", ".");
    tree.pipe("oracle/pipe");
    tree.file("oracle/closed/unseen", 50'000);
    tree.mode("oracle/closed", 0);
}

TEST(Measuring, TheOracleTreeEqualsDuWithEveryNumberOfThreads) {
    const OddTree tree;
    growOracle(tree, true);
    const std::int64_t expected = duBytes(tree.path("oracle"));
    for (const unsigned threads : {1U, 2U, 8U})
        EXPECT_THAT(usageByThreads(tree.path("oracle"), false, threads), Optional(expected)) << threads;
    EXPECT_THAT(fastDirectorySize(tree.url("oracle"), false), Optional(expected));
}

TEST(Measuring, TheOracleTreeEqualsDuWithLinksFollowed) {
    const OddTree tree;
    growOracle(tree, false);
    const std::int64_t expected = duBytes(tree.path("oracle"), true);
    for (const unsigned threads : {1U, 2U, 8U})
        EXPECT_THAT(usageByThreads(tree.path("oracle"), true, threads), Optional(expected)) << threads;
    EXPECT_THAT(fastDirectorySize(tree.url("oracle"), true), Optional(expected));
}

TEST(Measuring, AnOrdinaryUserGetsWhatDuGivesThatUser) {
    if (::geteuid() != 0) GTEST_SKIP() << "the tests run as an ordinary user already";
    const OddTree tree;
    growOracle(tree, true);
    tree.giveAway();
    const std::string asRoot = runTreeTool(Rights::asStarted, {"size", tree.path("oracle")}).output;
    const ShellResult ours = runTreeTool(Rights::ordinaryUser, {"size", tree.path("oracle")});
    const ShellResult theirs = runProgram(
        {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", "du", "-sk", tree.path("oracle")});
    const long long kibibytes = std::atoll(theirs.output.c_str());
    EXPECT_EQ(ours.output, std::to_string(kibibytes * 1024) + "\n");
    EXPECT_NE(ours.output, asRoot);
}

TEST(Measuring, AChainOf20000FoldersUnderSmallLimits) {
    const OddTree tree(OddTree::Place::memory);
    tree.chain("deep", "d", 20'000, 5'000, 100);
    const std::int64_t expected = duBytes(tree.path("deep"));
    for (const char* threads : {"1", "4"}) {
        const ShellResult found = runProgram({"sh", "-c", "ulimit -n 256 && ulimit -s 1024 && exec \"$@\"",
                                              "sh", VESKO_TREE_TOOL, "usage", tree.path("deep"), threads});
        EXPECT_EQ(found.output, std::to_string(expected) + "\n") << found.errors;
    }
}

TEST(Measuring, FiftyTwoLevelsOfNamesOf200Bytes) {
    const OddTree tree;
    tree.chain("deep", std::string(200, 'n'), 52, 5'000, 10);
    EXPECT_THAT(usageByThreads(tree.path("deep"), false, 1), Optional(duBytes(tree.path("deep"))));
    // No links are in it, so following them changes nothing; `du -L` itself fails on a path this long.
    EXPECT_THAT(usageByThreads(tree.path("deep"), true, 8), Optional(duBytes(tree.path("deep"))));
}

TEST(Measuring, AManyFoldersTreeUnderFewDescriptors) {
    const OddTree tree;
    for (int i = 0; i < 40; ++i)
        for (int j = 0; j < 12; ++j)
            tree.file("t/" + std::to_string(i) + "/x/" + std::to_string(j) + "/y/z/file", 4'000);
    const std::string expected = std::to_string(duBytes(tree.path("t"))) + "\n";
    for (const char* threads : {"1", "8"}) {
        const ShellResult found = runProgram({"sh", "-c", "ulimit -n 80 && exec \"$@\"", "sh",
                                              VESKO_TREE_TOOL, "usage", tree.path("t"), threads});
        EXPECT_EQ(found.output, expected) << threads;
    }
}

TEST(Measuring, ATreeThatCannotBeWalkedForLackOfDescriptorsHasNoFigure) {
#if __has_feature(address_sanitizer)
    GTEST_SKIP() << "the undefined-behaviour sanitizer needs descriptors of its own";
#endif
    const OddTree tree;
    for (int i = 0; i < 30; ++i) tree.file("t/" + std::to_string(i) + "/a/b/c/d/e/f/file", 4'000);
    // Three standard ones and the root's two handles: nothing is left for the folders inside.
    const ShellResult found =
        runProgram({"sh", "-c", "ulimit -n 5 && exec \"$@\"", "sh", VESKO_TREE_TOOL, "size", tree.path("t")});
    EXPECT_EQ(found.output, "nothing\n") << found.errors;
}

TEST(Measuring, WhatIsMountedInsideDoesNotCount) {
    if (const std::string why = whyNoOwnMounts(); !why.empty()) GTEST_SKIP() << why;
    const OddTree tree;
    tree.file("tree/own", 100'000);
    tree.folder("tree/tmpfs");
    tree.folder("tree/bound");
    tree.file("tree/file");
    tree.file("elsewhere/large", 3'000'000);
    const std::string script = "mount -t tmpfs none \"$1/tree/tmpfs\"\n"
                               "head -c 2000000 /dev/zero > \"$1/tree/tmpfs/inside\"\n"
                               "mount --bind \"$1/elsewhere\" \"$1/tree/bound\"\n"
                               "mount --bind \"$1/elsewhere/large\" \"$1/tree/file\"\n"
                               "test \"$(stat -c %s \"$1/tree/bound/large\")\" = 3000000\n"
                               "tree_tool size \"$1/tree\"\n";
    const ShellResult found = runInOwnMounts(Rights::ordinaryUser, script, {tree.path()});
    ASSERT_EQ(found.status, 0) << found.errors;
    // Without the mounts: the own file, the folder itself. The three places that something stands on do not
    // count.
    tree.file("plain/own", 100'000);
    EXPECT_EQ(found.output, std::to_string(duBytes(tree.path("plain"))) + "\n");
}

TEST(Measuring, ACycleOfBindMountsEnds) {
    if (const std::string why = whyNoOwnMounts(); !why.empty()) GTEST_SKIP() << why;
    const OddTree tree;
    tree.file("tree/own", 100'000);
    tree.folder("tree/cycle");
    const ShellResult found = runInOwnMounts(Rights::asStarted,
                                             "mount --bind \"$1/tree\" \"$1/tree/cycle\"\n"
                                             "test -e \"$1/tree/cycle/own\"\n"
                                             "tree_tool size \"$1/tree\"\ntree_tool size \"$1/tree\" links\n",
                                             {tree.path()});
    ASSERT_EQ(found.status, 0) << found.errors;
    tree.file("plain/own", 100'000);
    const std::string expected = std::to_string(duBytes(tree.path("plain"))) + "\n";
    EXPECT_EQ(found.output, expected + expected);
}

TEST(Measuring, AFollowedLinkBringsItsTargetsFileSystem) {
    if (const std::string why = whyNoOwnMounts(); !why.empty()) GTEST_SKIP() << why;
    const OddTree tree;
    tree.file("tree/own", 100'000);
    tree.folder("mounted");
    tree.link("tree/link", tree.path("mounted"));
    const ShellResult found = runInOwnMounts(Rights::asStarted,
                                             "mount -t tmpfs none \"$1/mounted\"\n"
                                             "head -c 2000000 /dev/zero > \"$1/mounted/inside\"\n"
                                             "tree_tool size \"$1/tree\" links\n"
                                             "du -skL \"$1/tree\" | cut -f1\n",
                                             {tree.path()});
    ASSERT_EQ(found.status, 0) << found.errors;
    long long ours = 0;
    long long theirs = 0;
    ASSERT_EQ(std::sscanf(found.output.c_str(), "%lld %lld", &ours, &theirs), 2) << found.output;
    EXPECT_EQ(ours, theirs * 1024);
    EXPECT_GT(ours, 2'000'000);
}

TEST(Measuring, OneEntryThatFailsWithAnInputErrorIsPassedOver) {
    if (const std::string why = whyNoInjection(); !why.empty()) GTEST_SKIP() << why;
    const OddTree tree;
    tree.file("tree/good", 100'000);
    tree.file("tree/bad", 200'000);
    const std::string log = tree.path("log");
    const ShellResult found =
        runProgram({"strace", "-f", "-o", log, "-P", "bad", "-e", "trace=statx", "-e",
                    "inject=statx:error=EIO", VESKO_TREE_TOOL, "size", tree.path("tree")});
    EXPECT_THAT(tree.read("log"), HasSubstr("(INJECTED)"));
    tree.file("expected/good", 100'000);
    EXPECT_EQ(found.output, std::to_string(duBytes(tree.path("expected"))) + "\n");
}

TEST(Measuring, AFolderThatFailsWithAnInputErrorCountsForItself) {
    if (const std::string why = whyNoInjection(); !why.empty()) GTEST_SKIP() << why;
    const OddTree tree;
    tree.file("tree/good", 100'000);
    tree.file("tree/bad/inside", 200'000);
    const ShellResult found = runProgram({"strace", "-f", "-o", tree.path("log"), "-P", tree.path("tree/bad"),
                                          "-e", "trace=getdents64", "-e", "inject=getdents64:error=EIO",
                                          VESKO_TREE_TOOL, "size", tree.path("tree")});
    EXPECT_THAT(tree.read("log"), HasSubstr("(INJECTED)"));
    tree.file("expected/good", 100'000);
    tree.folder("expected/bad");
    EXPECT_EQ(found.output, std::to_string(duBytes(tree.path("expected"))) + "\n");
}

TEST(Measuring, NeverOpensAPipeASocketOrADevice) {
    if (const std::string why = whyNoInjection(); !why.empty()) GTEST_SKIP() << why;
    const OddTree tree;
    tree.file("tree/file", 100'000);
    tree.pipe("tree/pipe");
    tree.socket("tree/socket");
    if (::geteuid() == 0) ASSERT_EQ(runProgram({"mknod", tree.path("tree/null"), "c", "1", "3"}).status, 0);
    const ShellResult found =
        runProgram({"strace", "-f", "-o", tree.path("log"), "-P", "pipe", "-P", "socket", "-P", "null", "-P",
                    "file", VESKO_TREE_TOOL, "size", tree.path("tree")});
    EXPECT_EQ(found.output, std::to_string(duBytes(tree.path("tree"))) + "\n");
    const std::string log = tree.read("log");
    ASSERT_THAT(log, HasSubstr("\"pipe\"")); // it was met, and asked about
    EXPECT_THAT(log, ::testing::Not(HasSubstr("open")));
}

TEST(Measuring, ASingleFilesFigureIsThatOfDu) {
    const OddTree tree;
    tree.file("small", 1);
    tree.file("large", 1'234'567);
    tree.sparse("sparse", 1 << 30);
    tree.preallocated("preallocated", 5 << 20);
    tree.pipe("pipe");
    tree.link("link", "large");
    tree.link("dangling", "nowhere");
    for (const char* name : {"small", "large", "sparse", "preallocated", "pipe", "link", "dangling"})
        EXPECT_THAT(allocatedFileSize(tree.url(name)), Optional(duBytes(tree.path(name)))) << name;
    EXPECT_THAT(allocatedFileSize(tree.url("link"), true), Optional(duBytes(tree.path("link"), true)));
    EXPECT_GT(*allocatedFileSize(tree.url("link"), true), 1'000'000);
}

TEST(Measuring, AFolderOrAMissingPathHasNoSingleFilesFigure) {
    const OddTree tree;
    tree.folder("folder");
    tree.link("link", "folder");
    EXPECT_EQ(allocatedFileSize(tree.url("folder")), std::nullopt);
    EXPECT_EQ(allocatedFileSize(tree.url("link"), true), std::nullopt);
    EXPECT_EQ(allocatedFileSize(tree.url("missing")), std::nullopt);
    tree.link("dangling", "nowhere");
    EXPECT_EQ(allocatedFileSize(tree.url("dangling"), true), std::nullopt);
}

} // namespace
} // namespace vesko
