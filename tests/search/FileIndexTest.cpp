#include "search/FileIndex.h"

#include "base/ChildProcess.h"
#include "support/TempTree.h"
#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>

namespace vesko {
namespace {

using Kind = FileIndex::Kind;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::TempTree;

class FileIndexTest : public ::testing::Test {
protected:
    /// What is found, below the root.
    FoundPaths found(const std::string& name, Kind kind = Kind::folder) {
        const IndexedFiles index = indexFiles(tree.root(), {});
        EXPECT_TRUE(index);
        if (!index) return {};
        FoundPaths paths = (*index)->pathsNamed(name, kind);
        for (std::string& path : paths) {
            EXPECT_TRUE(path.starts_with(tree.root().path() + "/")) << path;
            path.erase(0, tree.root().path().size() + 1);
        }
        return paths;
    }
    TempTree tree;
};

TEST_F(FileIndexTest, FoldersAreFoundByTheirExactName) {
    tree.folder("a/build");
    tree.folder("b/c/build");
    tree.folder("build");
    tree.folder("a/Build");
    tree.folder("a/building");
    tree.folder("a/rebuild");
    EXPECT_THAT(found("build"), ElementsAre("a/build", "b/c/build", "build"));
}

TEST_F(FileIndexTest, AFileIsNoFolderButAnEntry) {
    tree.file("a/target");
    tree.folder("b/target");
    tree.link("c/target", "../b");
    EXPECT_THAT(found("target"), ElementsAre("b/target"));
    EXPECT_THAT(found("target", Kind::any), ElementsAre("a/target", "b/target", "c/target"));
}

TEST_F(FileIndexTest, WhatNobodyHasIsNotFound) {
    tree.file("a/b");
    EXPECT_THAT(found("c", Kind::any), IsEmpty());
}

TEST_F(FileIndexTest, HiddenFoldersAndHiddenNamesAreLeftOut) {
    tree.folder(".cache/build");
    tree.folder("a/.next/build");
    tree.file("a/.env");
    tree.folder("a/build");
    EXPECT_THAT(found("build"), ElementsAre("a/build"));
    EXPECT_THAT(found(".next"), IsEmpty());
    EXPECT_THAT(found(".env", Kind::any), IsEmpty());
}

TEST_F(FileIndexTest, ARootIsSearchedEvenIfItIsHidden) {
    tree.folder(".hidden/build");
    const IndexedFiles index = indexFiles(tree.url(".hidden"), {});
    ASSERT_TRUE(index);
    EXPECT_THAT((*index)->pathsNamed("build", Kind::folder), ElementsAre(tree.path(".hidden/build")));
}

TEST_F(FileIndexTest, DependencyFoldersAreFoundAndNotEntered) {
    tree.folder("app/node_modules/pkg/node_modules");
    tree.folder("app/node_modules/pkg/build");
    tree.file("app/node_modules/pkg/package.json");
    tree.folder("ios/Pods/Lib/build");
    tree.file("app/package.json");
    EXPECT_THAT(found("node_modules"), ElementsAre("app/node_modules"));
    EXPECT_THAT(found("Pods"), ElementsAre("ios/Pods"));
    EXPECT_THAT(found("build"), IsEmpty());
    EXPECT_THAT(found("package.json", Kind::any), ElementsAre("app/package.json"));
}

TEST_F(FileIndexTest, ProgramsCachesAreFoundAndNotEntered) {
    tree.folder("Library/Caches/Yarn/v6/build");
    tree.folder("Library/Developer/build");
    tree.folder("Projects/Caches/build");
    EXPECT_THAT(found("build"), ElementsAre("Library/Developer/build", "Projects/Caches/build"));
    EXPECT_THAT(found("Caches"), ElementsAre("Library/Caches", "Projects/Caches"));
}

TEST_F(FileIndexTest, ANameThatBreaksALineIsLeftOutAloneOrWithAllThatIsInIt) {
    tree.folder("bad\nname/build");
    tree.folder("caf\xe9/build");
    tree.folder("quo'te\"/build");
    tree.folder("a\rb/build");
    tree.folder("ação/build");
    EXPECT_THAT(found("build"), ElementsAre("a\rb/build", "ação/build", "quo'te\"/build"));
}

TEST_F(FileIndexTest, LinksAreNotFollowed) {
    tree.folder("real/build");
    tree.link("again", "real");
    tree.link("loop", ".");
    EXPECT_THAT(found("build"), ElementsAre("real/build"));
}

TEST_F(FileIndexTest, ARootThatIsALinkIsSearchedUnderItsOwnName) {
    tree.folder("real/a/build");
    const FileURL root = tree.link("home", "real");
    const IndexedFiles index = indexFiles(root, {});
    ASSERT_TRUE(index);
    EXPECT_THAT((*index)->pathsNamed("build", Kind::folder), ElementsAre(root.path() + "/a/build"));
}

TEST_F(FileIndexTest, WhatIsGoneOrBecameAnotherKindIsNotFound) {
    tree.folder("a/build");
    tree.folder("b/build");
    tree.folder("c/build");
    const IndexedFiles index = indexFiles(tree.root(), {});
    ASSERT_TRUE(index);
    std::filesystem::remove(tree.path("a/build"));
    std::filesystem::remove(tree.path("b/build"));
    tree.file("b/build");
    EXPECT_THAT((*index)->pathsNamed("build", Kind::folder), ElementsAre(tree.path("c/build")));
}

TEST_F(FileIndexTest, AFolderWithALongPathIsFound) {
    std::string deep;
    for (int level = 0; level < 30; ++level) deep += std::string(200, 'd') + "/";
    const auto made = runChild("/bin/sh", {"-c",
                                           R"(cd "$1" && i=0; while [ $i -lt 30 ]; do
                                                  mkdir "$2" && cd -P "$2" || exit 1; i=$((i+1))
                                              done; mkdir build)",
                                           "sh", tree.root().path(), std::string(200, 'd')});
    ASSERT_TRUE(made);
    ASSERT_EQ(made->status, 0);
    EXPECT_THAT(found("build"), ElementsAre(deep + "build"));
}

TEST_F(FileIndexTest, AMissingRootAFileAndADanglingLinkCanNotBeSearched) {
    for (const FileURL& root : {tree.url("missing"), tree.file("file"), tree.link("dangling", "nowhere")}) {
        const IndexedFiles index = indexFiles(root, {});
        ASSERT_FALSE(index) << root.path();
        EXPECT_EQ(index.error(), SearchFailure::noFolder);
    }
}

TEST_F(FileIndexTest, AStoppedWalkHasNoIndex) {
    tree.folder("a/build");
    StopSource source;
    source.requestStop();
    const IndexedFiles index = indexFiles(tree.root(), source.token());
    ASSERT_FALSE(index);
    EXPECT_EQ(index.error(), SearchFailure::stopped);
}

/// Enough entries for several threads; every folder's entries must be found below that folder.
TEST_F(FileIndexTest, ALargeTreeIsFoundWhole) {
    FoundPaths expected;
    for (int project = 0; project < 90; ++project) {
        const std::string folder = "p" + std::to_string(project) + "/src";
        for (int file = 0; file < 25; ++file) tree.file(folder + "/" + std::to_string(file) + ".c", "");
        tree.folder(folder + "/out");
        expected.push_back(folder + "/out");
    }
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(found("out"), expected);
    EXPECT_EQ(found("7.c", Kind::any).size(), 90U);
    EXPECT_THAT(found("7.c"), IsEmpty());
}

} // namespace
} // namespace vesko
