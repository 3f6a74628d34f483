#include "core/WalkedSize.h"

#include "concurrency/CurrentTask.h"
#include "core/DiskUsage.h"
#include "support/TempTree.h"
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vesko {
namespace {

using testing::TempTree;

std::int64_t allocated(const FileURL& url) {
    struct stat status{};
    return ::lstat(url.path().c_str(), &status) == 0 ? status.st_blocks * 512 : -1;
}

TEST(WalkedSize, AddsUpTheFilesAndNotTheFolders) {
    const TempTree tree;
    const FileURL a = tree.file("folder/a", std::string(100'000, 'x'));
    const FileURL b = tree.file("folder/deep/er/b", std::string(50'000, 'x'));
    EXPECT_EQ(walkedSize(tree.url("folder")), allocated(a) + allocated(b));
}

TEST(WalkedSize, HiddenEntriesAndTheInsideOfPackagesAreNotSeen) {
    const TempTree tree;
    const FileURL seen = tree.file("folder/seen", std::string(20'000, 'x'));
    tree.file("folder/.hidden", std::string(20'000, 'x'));
    tree.file("folder/.git/objects/x", std::string(20'000, 'x'));
    tree.file("folder/Tool.app/Contents/big", std::string(20'000, 'x'));
    EXPECT_EQ(walkedSize(tree.url("folder")), allocated(seen));
}

TEST(WalkedSize, APackageItselfIsWalked) {
    const TempTree tree;
    const FileURL inside = tree.file("Tool.app/Contents/big", std::string(20'000, 'x'));
    EXPECT_EQ(walkedSize(tree.url("Tool.app")), allocated(inside));
}

TEST(WalkedSize, AHardLinkCountsOnceForEachName) {
    const TempTree tree;
    const FileURL first = tree.file("folder/first", std::string(20'000, 'x'));
    ASSERT_EQ(::link(first.path().c_str(), tree.path("folder/second").c_str()), 0);
    EXPECT_EQ(walkedSize(tree.url("folder")), 2 * allocated(first));
}

TEST(WalkedSize, AFileIsItsOwnBlocks) {
    const TempTree tree;
    const FileURL file = tree.file("file", std::string(20'000, 'x'));
    EXPECT_EQ(walkedSize(file), allocated(file));
}

TEST(WalkedSize, AFolderWithNothingToSeeAsksDuWithLinksFollowed) {
    const TempTree tree;
    tree.file("folder/.hidden", std::string(20'000, 'x'));
    tree.file("elsewhere/large", std::string(500'000, 'x'));
    tree.link("folder/.link", tree.path("elsewhere"));
    EXPECT_EQ(walkedSize(tree.url("folder")), duProgramSize(tree.url("folder"), true, runChild));
    EXPECT_GE(walkedSize(tree.url("folder")), 500'000);
}

TEST(WalkedSize, WhatIsMissingIsZero) { EXPECT_EQ(walkedSize(FileURL("/no/such/place")), 0); }

TEST(WalkedSize, WhatCannotBeReadIsZero) {
    const TempTree tree;
    tree.file("folder/a", std::string(20'000, 'x'));
    ::chmod(tree.root().path().c_str(), 0755);
    ::chmod(tree.path("folder").c_str(), 0);
    // The administrator can read everything, so somebody else asks.
    constexpr uid_t nobody = 65534;
    const pid_t asking = ::fork();
    if (asking == 0) {
        const bool isOrdinary = ::geteuid() != 0 || ::setresuid(nobody, nobody, nobody) == 0;
        ::_exit(isOrdinary ? (walkedSize(tree.url("folder")) == 0 ? 0 : 1) : 2);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(asking, &status, 0), asking);
    ::chmod(tree.path("folder").c_str(), 0700);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST(WalkedSize, ACancelledTaskEndsTheWalkByThrowing) {
    const TempTree tree;
    tree.file("folder/a", "x");
    StopSource source;
    source.requestStop();
    const CurrentTaskScope scope(source.token());
    EXPECT_THROW(walkedSize(tree.url("folder")), Cancelled);
}

} // namespace
} // namespace vesko
