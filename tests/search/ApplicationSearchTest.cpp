#include "base/FileSystem.h"
#include "search/FileIndex.h"

#include "support/FileTimes.h"
#include "support/TempTree.h"
#include <filesystem>
#include <gmock/gmock.h>

namespace vesko {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::TempTree;

const Date limit = dateFromUnixSeconds(1'700'000'000);
const Date longAgo = limit - std::chrono::hours(24);
const Date lately = limit + std::chrono::hours(24);

class ApplicationSearch : public ::testing::Test {
protected:
    void SetUp() override {
        if (!contentAccessDate(tree.file("probe"))) GTEST_SKIP() << "this volume keeps no access dates";
    }
    FileURL executable(const std::string& path, Date used) {
        const FileURL made = tree.file(path);
        std::filesystem::permissions(made.path(), std::filesystem::perms(0755));
        testing::setFileTimes(made, used, longAgo);
        return made;
    }
    FoundPaths found(Date before = limit) {
        auto paths = findApplicationsUnusedSince(tree.root(), before, {});
        EXPECT_TRUE(paths);
        if (!paths) return {};
        for (std::string& path : *paths) path.erase(0, tree.root().path().size() + 1);
        return *paths;
    }
    TempTree tree;
};

TEST_F(ApplicationSearch, BundlesAndImagesAreFoundByTheirLastUse) {
    executable("Old.app/Contents/MacOS/Old", longAgo);
    executable("New.app/Contents/MacOS/New", lately);
    executable("Tool-1.0.AppImage", longAgo);
    executable("Fresh.AppImage", lately);
    EXPECT_THAT(found(), ElementsAre("Old.app", "Tool-1.0.AppImage"));
}

TEST_F(ApplicationSearch, TheLatestExecutableCounts) {
    executable("Suite.app/Contents/MacOS/Main", longAgo);
    executable("Suite.app/Contents/MacOS/Helper", lately);
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(ApplicationSearch, WhatIsNotExecutableIsNoUse) {
    executable("Old.app/Contents/MacOS/Old", longAgo);
    testing::setFileTimes(tree.file("Old.app/Contents/Resources/icon"), lately, lately);
    EXPECT_THAT(found(), ElementsAre("Old.app"));
}

TEST_F(ApplicationSearch, WithoutAnExecutableThereIsNoDateAndNoMatch) {
    testing::setFileTimes(tree.file("Data.app/Contents/Resources/icon"), longAgo, longAgo);
    testing::setFileTimes(tree.file("Plain.AppImage"), longAgo, longAgo);
    tree.folder("Empty.app");
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(ApplicationSearch, ADateEqualToTheLimitIsNotBeforeIt) {
    executable("Edge.app/Edge", limit);
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_THAT(found(limit + std::chrono::seconds(1)), ElementsAre("Edge.app"));
}

TEST_F(ApplicationSearch, AnApplicationInsideAnotherIsPartOfIt) {
    executable("Outer.app/Contents/MacOS/Outer", longAgo);
    executable("Outer.app/Contents/Helpers/Inner.app/Inner", longAgo);
    EXPECT_THAT(found(), ElementsAre("Outer.app"));
}

TEST_F(ApplicationSearch, FoldersFurtherDownAreSearchedHiddenAndDependencyFoldersAreNot) {
    executable("Games/Old/Chess.app/Chess", longAgo);
    executable(".hidden/Secret.app/Secret", longAgo);
    executable(".Hidden.app/Secret", longAgo);
    executable("web/node_modules/electron/Electron.app/Electron", longAgo);
    EXPECT_THAT(found(), ElementsAre("Games/Old/Chess.app"));
}

TEST_F(ApplicationSearch, OnlyTheKindThatFitsTheNameIsAnApplication) {
    executable("File.app", longAgo);
    executable("Folder.AppImage/run", longAgo);
    executable("plain/run", longAgo);
    executable("real/Run", longAgo);
    tree.link("Link.app", "real");
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(ApplicationSearch, ANameThatBreaksALineIsLeftOut) {
    executable("Bad\nName.app/run", longAgo);
    executable("caf\xe9.app/run", longAgo);
    executable("It's \"fine\".app/run", longAgo);
    EXPECT_THAT(found(), ElementsAre("It's \"fine\".app"));
}

TEST_F(ApplicationSearch, AMissingRootCanNotBeSearched) {
    const auto paths = findApplicationsUnusedSince(tree.url("missing"), limit, {});
    ASSERT_FALSE(paths);
    EXPECT_EQ(paths.error(), SearchFailure::noFolder);
}

TEST_F(ApplicationSearch, AStoppedSearchFindsNothing) {
    executable("Old.app/Old", longAgo);
    StopSource source;
    source.requestStop();
    const auto paths = findApplicationsUnusedSince(tree.root(), limit, source.token());
    ASSERT_FALSE(paths);
    EXPECT_EQ(paths.error(), SearchFailure::stopped);
}

TEST_F(ApplicationSearch, SearchingIsNoUse) {
    executable("Old.app/Contents/MacOS/Old", longAgo);
    found();
    EXPECT_EQ(contentAccessDate(tree.url("Old.app/Contents/MacOS/Old")), longAgo);
    EXPECT_THAT(found(), ElementsAre("Old.app"));
}

} // namespace
} // namespace vesko
