#include "base/FileURL.h"

#include <gtest/gtest.h>
#include <set>
#include <unordered_set>

namespace vesko {
namespace {

TEST(FileURL, ATrailingSlashIsNoPartOfThePath) {
    EXPECT_EQ(FileURL("/a/b/").path(), "/a/b");
    EXPECT_EQ(FileURL("/a/b//").path(), "/a/b");
    EXPECT_EQ(FileURL("/a/b/"), FileURL("/a/b"));
    EXPECT_EQ(FileURL("/").path(), "/");
    EXPECT_EQ(FileURL("///").path(), "/");
}

TEST(FileURL, TheEmptyOneNamesNoFile) {
    EXPECT_TRUE(FileURL().empty());
    EXPECT_EQ(FileURL(), FileURL(""));
    EXPECT_FALSE(FileURL("/").empty());
}

TEST(FileURL, BytesAreNeitherResolvedNorRewritten) {
    EXPECT_EQ(FileURL("/a/./b/../c").path(), "/a/./b/../c");
    EXPECT_EQ(FileURL("/a%20b").path(), "/a%20b");
    EXPECT_EQ(FileURL("/caf\xE9").path(), "/caf\xE9");
    EXPECT_NE(FileURL("/\u00E9"), FileURL("/e\u0301"));
    EXPECT_NE(FileURL("/A"), FileURL("/a"));
}

TEST(FileURL, TheLastComponentStandsBehindTheLastSlash) {
    EXPECT_EQ(FileURL("/a/b.txt").lastPathComponent(), "b.txt");
    EXPECT_EQ(FileURL("/a/b/").lastPathComponent(), "b");
    EXPECT_EQ(FileURL("b").lastPathComponent(), "b");
    EXPECT_EQ(FileURL("/").lastPathComponent(), "/");
    EXPECT_EQ(FileURL("").lastPathComponent(), "");
}

TEST(FileURL, TheExtensionStandsBehindTheLastDotOfTheName) {
    EXPECT_EQ(FileURL("/a/b.tar.gz").pathExtension(), "gz");
    EXPECT_EQ(FileURL("/a/b.DMG").pathExtension(), "DMG");
    EXPECT_EQ(FileURL("/a.app/b").pathExtension(), "");
    EXPECT_EQ(FileURL("/a/.npm").pathExtension(), "");
    EXPECT_EQ(FileURL("/a/b.").pathExtension(), "");
    EXPECT_EQ(FileURL("/a/.b.c").pathExtension(), "c");
}

TEST(FileURL, TheFolderAboveTheRootIsTheRoot) {
    EXPECT_EQ(FileURL("/a/b").parent(), FileURL("/a"));
    EXPECT_EQ(FileURL("/a").parent(), FileURL("/"));
    EXPECT_EQ(FileURL("/").parent(), FileURL("/"));
    EXPECT_EQ(FileURL("a").parent(), FileURL());
}

TEST(FileURL, AppendingPutsOneSlashBetween) {
    EXPECT_EQ(FileURL("/a").appending("b/c").path(), "/a/b/c");
    EXPECT_EQ(FileURL("/").appending("b").path(), "/b");
    EXPECT_EQ(FileURL("/a/").appending("b/").path(), "/a/b");
}

TEST(FileURL, EqualPathsHaveEqualHashesAndAreOneKey) {
    const FileURL first("/a/b");
    const FileURL copy = first;
    const FileURL again("/a/b/");
    EXPECT_EQ(first.hash(), again.hash());
    EXPECT_EQ(&first.path(), &copy.path()) << "a copy shares its bytes";
    EXPECT_EQ((std::unordered_set<FileURL>{first, copy, again, FileURL("/a/c")}).size(), 2U);
}

TEST(FileURL, TheOrderIsThatOfTheBytes) {
    const std::set<FileURL> sorted{FileURL("/b"), FileURL("/a/c"), FileURL("/a"), FileURL("/a b")};
    std::string order;
    for (const FileURL& url : sorted) order += url.path() + " ";
    EXPECT_EQ(order, "/a /a b /a/c /b ");
}

} // namespace
} // namespace vesko
