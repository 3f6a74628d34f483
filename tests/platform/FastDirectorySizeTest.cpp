#include "core/FastDirectorySize.h"

#include "concurrency/CurrentTask.h"
#include "platform/OddTree.h"
#include "platform/ShellCommand.h"
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

namespace vesko {
namespace {

using ::testing::Eq;
using ::testing::Optional;

TEST(FastDirectorySize, EqualsDuOnAPlainTree) {
    const OddTree tree;
    tree.file("a/one", 100'000);
    tree.file("a/b/two", 5'000);
    tree.folder("a/empty");
    EXPECT_THAT(fastDirectorySize(tree.url("a"), false), Optional(duBytes(tree.path("a"))));
}

/// What was not opened for long is offered for deletion; measuring must not make it look used.
TEST(FastDirectorySize, MeasuringLeavesNoAccessDateOnTheFoldersItReads) {
    const OddTree tree;
    tree.file("a/b/one", 100'000);
    const timespec longAgo[2] = {{1'000, 0}, {2'000, 0}};
    for (const std::string& folder : {tree.path("a/b"), tree.path("a")})
        ASSERT_EQ(::utimensat(AT_FDCWD, folder.c_str(), longAgo, 0), 0);
    ASSERT_TRUE(fastDirectorySize(tree.url("a"), false));
    ASSERT_TRUE(fastDirectorySize(tree.url("a"), true));
    for (const std::string& folder : {tree.path("a"), tree.path("a/b")}) {
        struct stat facts{};
        ASSERT_EQ(::stat(folder.c_str(), &facts), 0);
        EXPECT_EQ(facts.st_atim.tv_sec, 1'000) << folder;
    }
}

TEST(FastDirectorySize, CountsAFileWithTwoNamesOnce) {
    const OddTree tree;
    tree.file("a/one", 1'000'000);
    tree.hardLink("a/b/two", "a/one");
    const auto measured = fastDirectorySize(tree.folder("a").empty() ? FileURL() : tree.url("a"), false);
    EXPECT_THAT(measured, Optional(duBytes(tree.path("a"))));
    EXPECT_LT(*measured, 1'500'000);
}

TEST(FastDirectorySize, GivesNothingForAMissingPath) {
    const OddTree tree;
    EXPECT_THAT(fastDirectorySize(tree.url("missing"), false), Eq(std::nullopt));
}

TEST(FastDirectorySize, GivesNothingForAFile) {
    const OddTree tree;
    tree.file("big", 1'000'000);
    EXPECT_THAT(fastDirectorySize(tree.url("big"), false), Eq(std::nullopt));
}

TEST(FastDirectorySize, GivesNothingForALinkToAFolder) {
    const OddTree tree;
    tree.file("folder/big", 1'000'000);
    tree.link("link", "folder");
    EXPECT_THAT(fastDirectorySize(tree.url("link"), false), Eq(std::nullopt));
    EXPECT_THAT(fastDirectorySize(tree.url("link"), true), Eq(std::nullopt));
}

TEST(FastDirectorySize, GivesNothingForAnEmptyFolder) {
    const OddTree tree;
    tree.folder("empty");
    ASSERT_LE(duBytes(tree.path("empty")), 4096);
    EXPECT_THAT(fastDirectorySize(tree.url("empty"), false), Eq(std::nullopt));
}

TEST(FastDirectorySize, GivesNothingForACancelledTask) {
    const OddTree tree;
    tree.file("a/one", 1'000'000);
    StopSource source;
    const CurrentTaskScope scope(source.token());
    ASSERT_THAT(fastDirectorySize(tree.url("a"), false), Optional(duBytes(tree.path("a"))));
    source.requestStop();
    EXPECT_THAT(fastDirectorySize(tree.url("a"), false), Eq(std::nullopt));
}

TEST(FastDirectorySize, FollowsLinksOnlyWhenAsked) {
    const OddTree tree;
    tree.file("large/one", 2'000'000);
    tree.file("small/two", 10'000);
    tree.link("small/link", "../large");
    EXPECT_THAT(fastDirectorySize(tree.url("small"), false), Optional(duBytes(tree.path("small"), false)));
    EXPECT_THAT(fastDirectorySize(tree.url("small"), true), Optional(duBytes(tree.path("small"), true)));
    EXPECT_GT(*fastDirectorySize(tree.url("small"), true), 2'000'000);
}

} // namespace
} // namespace vesko
