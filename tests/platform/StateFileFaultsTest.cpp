#include "base/FileSystem.h"
#include "base/StateFile.h"
#include "core/ScanCacheStore.h"
#include "support/MountNamespace.h"
#include "support/ScanCacheSamples.h"
#include "support/TempTree.h"
#include <csignal>
#include <gtest/gtest.h>
#include <random>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vesko {
namespace {

using testing::asOrdinaryUser;
using testing::bytesOf;
using testing::inMountNamespace;
using testing::largeSnapshot;
using testing::sampleSnapshot;
using testing::TempTree;

std::size_t entriesIn(const FileURL& folder) {
    const auto children = directChildren(folder, Hidden::include);
    return children ? children->size() : 0;
}

/// Saves a large snapshot where that can't succeed over a small one, and says what is not as it was.
std::string afterAFailedSave(const FileURL& file, std::size_t entriesBefore) {
    const std::string before = bytesOf(file);
    ScanCacheStore store(file);
    store.save(largeSnapshot(4'000));
    if (bytesOf(file) != before) return "the old file changed";
    if (entriesIn(file.parent()) != entriesBefore) return "something is left over";
    if (store.load() != sampleSnapshot()) return "the old snapshot does not load";
    return {};
}

std::string mounted(const FileURL& folder, unsigned long flags, const char* options) {
    return ::mount("tmpfs", folder.path().c_str(), "tmpfs", flags, options) == 0 ? "" : "can't mount";
}

#define EXPECT_WELL_IN_A_NAMESPACE(said)                                                                     \
    do {                                                                                                     \
        const std::optional<std::string> text = (said);                                                      \
        if (!text) GTEST_SKIP() << "mount namespaces are refused here";                                      \
        EXPECT_EQ(*text, "");                                                                                \
    } while (false)

TEST(StateFileFaults, AFullDiskLeavesTheOldFileAndLaterSavesWork) {
    const TempTree tree;
    EXPECT_WELL_IN_A_NAMESPACE(inMountNamespace([&]() -> std::string {
        if (auto said = mounted(tree.root(), 0, "size=256k"); !said.empty()) return said;
        const FileURL file = tree.url("scan-cache.json");
        ScanCacheStore store(file);
        store.save(sampleSnapshot());
        if (auto said = afterAFailedSave(file, 1); !said.empty()) return said;
        store.save(largeSnapshot(100));
        return store.load() == largeSnapshot(100) ? "" : "a small save does not work any more";
    }));
}

TEST(StateFileFaults, WithoutAnInodeLeftTheOldFileStays) {
    const TempTree tree;
    EXPECT_WELL_IN_A_NAMESPACE(inMountNamespace([&]() -> std::string {
        if (auto said = mounted(tree.root(), 0, "nr_inodes=3"); !said.empty()) return said;
        const FileURL file = tree.url("scan-cache.json");
        ScanCacheStore(file).save(sampleSnapshot());
        tree.file("last");
        return afterAFailedSave(file, 2);
    }));
}

TEST(StateFileFaults, AReadOnlyDiskLeavesTheOldFile) {
    const TempTree tree;
    EXPECT_WELL_IN_A_NAMESPACE(inMountNamespace([&]() -> std::string {
        if (auto said = mounted(tree.root(), 0, ""); !said.empty()) return said;
        const FileURL file = tree.url("scan-cache.json");
        ScanCacheStore(file).save(sampleSnapshot());
        if (auto said = mounted(tree.root(), MS_REMOUNT | MS_RDONLY, ""); !said.empty()) return said;
        return afterAFailedSave(file, 1);
    }));
}

TEST(StateFileFaults, AFolderThatMayNotBeWrittenLeavesTheOldFile) {
    const TempTree tree;
    const FileURL file = tree.url("state/scan-cache.json");
    ScanCacheStore(file).save(sampleSnapshot());
    ASSERT_EQ(::chmod(file.path().c_str(), 0644), 0);
    ASSERT_EQ(::chmod(file.parent().path().c_str(), 0555), 0);
    ASSERT_EQ(::chmod(tree.root().path().c_str(), 0755), 0);
    EXPECT_EQ(asOrdinaryUser([&] { return afterAFailedSave(file, 1); }), "");
}

/// Runs the saving program with system calls made to fail, as strace's --inject has it.
class InjectedFault : public ::testing::TestWithParam<const char*> {};

TEST_P(InjectedFault, LeavesTheOldFileAndNothingElse) {
    if (!fileExists(FileURL("/usr/bin/strace"))) GTEST_SKIP() << "strace is not installed";
    const TempTree tree;
    const FileURL file = tree.url("state/scan-cache.json");
    const FileURL log = tree.url("log");
    ScanCacheStore(file).save(sampleSnapshot());
    const std::string before = bytesOf(file);
    const std::string command = "ASAN_OPTIONS=detect_leaks=0 strace -f -qq -o '" + log.path() +
                                "' -e trace=" + GetParam() + " -e inject=" + GetParam() +
                                ":error=EIO '" VESKO_SAVE_SCAN_CACHE "' '" + file.path() + "' 2>'" +
                                tree.path("errors") + "'";
    const int status = std::system(command.c_str());
    if (bytesOf(tree.url("errors")).contains("ptrace")) GTEST_SKIP() << "tracing is refused here";
    ASSERT_TRUE(bytesOf(log).contains("(INJECTED)")) << bytesOf(log) << bytesOf(tree.url("errors"));
    EXPECT_EQ(WEXITSTATUS(status), 1) << "the old snapshot loads";
    EXPECT_EQ(bytesOf(file), before);
    EXPECT_EQ(entriesIn(file.parent()), 1u);
}

INSTANTIATE_TEST_SUITE_P(StateFile, InjectedFault, ::testing::Values("write", "fsync", "rename"),
                         [](const auto& info) { return std::string(info.param); });

TEST(StateFileFaults, TheSavingProgramSucceedsWithoutAFault) {
    const TempTree tree;
    const std::string command = "'" VESKO_SAVE_SCAN_CACHE "' '" + tree.path("scan-cache.json") + "'";
    EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 0);
}

/// A process that saves two snapshots in turn until it is killed.
pid_t startSaving(const FileURL& file) {
    const pid_t child = ::fork();
    if (child != 0) return child;
    ScanCacheStore store(file);
    const ScanCacheSnapshot small = sampleSnapshot();
    const ScanCacheSnapshot large = largeSnapshot(300);
    for (;;) {
        store.save(small);
        store.save(large);
    }
}

TEST(StateFileFaults, AThousandKillsInMidSaveCorruptNothing) {
    const TempTree tree;
    const FileURL file = tree.url("scan-cache.json");
    const ScanCacheSnapshot small = sampleSnapshot();
    const ScanCacheSnapshot large = largeSnapshot(300);
    ScanCacheStore(file).save(small);
    std::mt19937 random(11);
    int inTheMiddle = 0;
    // On a busy machine many children are killed before they have begun, so that it takes more of them.
    for (int count = 0; count < 1'000 || (inTheMiddle <= 100 && count < 5'000); ++count) {
        const pid_t child = startSaving(file);
        ASSERT_GT(child, 0);
        ::usleep(500 + random() % 6'000);
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        if (entriesIn(tree.root()) > 1) ++inTheMiddle;
        // The next start.
        const auto loaded = ScanCacheStore(file).load();
        ASSERT_TRUE(loaded == small || loaded == large) << count;
        ASSERT_EQ(entriesIn(tree.root()), 1u) << count;
    }
    EXPECT_GT(inTheMiddle, 100) << "too few kills hit a save";
}

} // namespace
} // namespace vesko
