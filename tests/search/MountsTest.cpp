// Searches where something is mounted, or may not be read. In child processes, so that nobody else sees it.
#include "search/FileIndex.h"

#include "support/FileTimes.h"
#include "support/MountNamespace.h"
#include "support/TempTree.h"
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/mount.h>

namespace vesko {
namespace {

using testing::TempTree;

const Date longAgo = dateFromUnixSeconds(1'000'000'000);
const Date limit = dateFromUnixSeconds(1'700'000'000);

std::string drawn(const std::expected<FoundPaths, SearchFailure>& found) {
    if (!found) return "failed";
    std::string text;
    for (const std::string& path : *found) text += path + "\n";
    return text;
}

std::string foldersNamed(const FileURL& root, const std::string& name) {
    const IndexedFiles index = indexFiles(root, {});
    return index ? drawn((*index)->pathsNamed(name, FileIndex::Kind::folder)) : "failed";
}

/// An application on a volume mounted with such options.
std::string foundOnVolume(const TempTree& tree, unsigned long options) {
    const std::string volume = tree.folder("volume").path();
    if (::mount("none", volume.c_str(), "tmpfs", options, nullptr) != 0) return "no volume";
    const FileURL run = tree.file("volume/Old.app/run");
    std::filesystem::permissions(run.path(), std::filesystem::perms(0755));
    testing::setFileTimes(run, longAgo, longAgo);
    return drawn(findApplicationsUnusedSince(FileURL(volume), limit, {}));
}

TEST(SearchOfMounts, WhereNoAccessDatesAreKeptNoApplicationCountsAsUnused) {
    const TempTree tree;
    const auto without = testing::inMountNamespace([&] { return foundOnVolume(tree, MS_NOATIME); });
    const auto with = testing::inMountNamespace([&] { return foundOnVolume(tree, 0); });
    if (!with) GTEST_SKIP() << "this machine refuses mount namespaces";
    EXPECT_EQ(*without, "");
    EXPECT_EQ(*with, tree.path("volume/Old.app") + "\n");
}

TEST(SearchOfMounts, WhatIsMountedInsideIsNotSearched) {
    const TempTree tree;
    tree.folder("own/build");
    const auto found = testing::inMountNamespace([&]() -> std::string {
        if (::mount("none", tree.folder("mounted").path().c_str(), "tmpfs", 0, nullptr) != 0)
            return "no volume";
        tree.folder("mounted/project/build");
        return foldersNamed(tree.root(), "build") + foldersNamed(tree.url("mounted"), "build");
    });
    if (!found) GTEST_SKIP() << "this machine refuses mount namespaces";
    EXPECT_EQ(*found, tree.path("own/build") + "\n" + tree.path("mounted/project/build") + "\n");
}

TEST(SearchOfRights, AnUnreadableFolderHidesOnlyItself) {
    const TempTree tree;
    tree.folder("closed/build");
    tree.folder("open/build");
    std::filesystem::permissions(tree.root().path(), std::filesystem::perms(0755));
    std::filesystem::permissions(tree.path("closed"), std::filesystem::perms::none);
    const std::string found = testing::asOrdinaryUser([&] { return foldersNamed(tree.root(), "build"); });
    std::filesystem::permissions(tree.path("closed"), std::filesystem::perms::owner_all);
    EXPECT_EQ(found, tree.path("open/build") + "\n");
}

} // namespace
} // namespace vesko
