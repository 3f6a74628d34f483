#include "core/DiskSizeCalculator.h"

#include "core/DirectoryStoragePathSizer.h"
#include "core/DiskUsage.h"
#include "core/FastDirectorySize.h"
#include "core/WalkedSize.h"
#include "support/TempTree.h"
#include <gtest/gtest.h>

namespace vesko {
namespace {

using testing::TempTree;

std::int64_t bytesByProgram(const FileURL& url, bool followLinks) {
    return duProgramSize(url, followLinks, runChild);
}

TEST(DiskSizeCalculator, AFolderTakesWhatTheProgramSays) {
    const TempTree tree;
    tree.file("folder/a", std::string(100'000, 'x'));
    tree.file("folder/.hidden/b", std::string(50'000, 'x'));
    EXPECT_EQ(DiskSizeCalculator().size(tree.url("folder"), false),
              bytesByProgram(tree.url("folder"), false));
    EXPECT_EQ(DiskSizeCalculator().size(tree.url("folder"), true), bytesByProgram(tree.url("folder"), true));
}

TEST(DiskSizeCalculator, AFileHasNoQuickFigureAndIsMeasuredLikeByTheProgram) {
    const TempTree tree;
    const FileURL file = tree.file("file", std::string(300'000, 'x'));
    EXPECT_FALSE(fastDirectorySize(file, false));
    EXPECT_FALSE(fastDirectorySize(file, true));
    EXPECT_EQ(DiskSizeCalculator().size(file, false), bytesByProgram(file, false));
    EXPECT_GE(DiskSizeCalculator().size(file, true), 300'000);
}

TEST(DiskSizeCalculator, LinksAreFollowedOnlyWhereDiskUsageIsPreferred) {
    const TempTree tree;
    tree.file("large/data", std::string(900'000, 'x'));
    tree.file("folder/small", "x");
    tree.link("folder/link", tree.path("large"));
    EXPECT_GE(DiskSizeCalculator().size(tree.url("folder"), true), 900'000);
    EXPECT_LT(DiskSizeCalculator().size(tree.url("folder"), false), 100'000);
    EXPECT_EQ(DiskSizeCalculator().linkAwareSize(tree.url("folder")),
              DiskSizeCalculator().size(tree.url("folder"), false));
}

TEST(DiskSizeCalculator, AnEmptyFolderHasItsFewBlocks) {
    const TempTree tree;
    const FileURL empty = tree.folder("empty");
    EXPECT_EQ(DiskSizeCalculator().size(empty, false), bytesByProgram(empty, false));
}

TEST(DiskSizeCalculator, AMissingPathAndADanglingLinkAreZero) {
    const TempTree tree;
    EXPECT_EQ(DiskSizeCalculator().size(tree.url("missing"), false), 0);
    EXPECT_EQ(DiskSizeCalculator().size(tree.link("dangling", "missing"), true), 0);
}

TEST(DirectoryStoragePathSizer, MeasuresWithoutFollowingLinks) {
    const TempTree tree;
    tree.file("large/data", std::string(900'000, 'x'));
    tree.file("folder/some", std::string(40'000, 'x'));
    tree.link("folder/link", tree.path("large"));
    const DirectoryStoragePathSizer sizer;
    EXPECT_EQ(sizer.allocatedBytes(tree.url("folder")), bytesByProgram(tree.url("folder"), false));
    EXPECT_EQ(sizer.allocatedBytes(tree.url("large/data")), bytesByProgram(tree.url("large/data"), false));
    EXPECT_EQ(sizer.allocatedBytes(tree.url("missing")), 0);
}

} // namespace
} // namespace vesko
