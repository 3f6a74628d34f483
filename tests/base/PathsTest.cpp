#include "base/Paths.h"
#include "support/ScopedEnvironment.h"
#include <gtest/gtest.h>
#include <pwd.h>
#include <string>
#include <unistd.h>

namespace vesko {
namespace {

using testing::ScopedEnvironment;

TEST(Paths, ACleanPathStays) {
    EXPECT_EQ(standardizedPath("/a/b c/ä"), "/a/b c/ä");
    EXPECT_EQ(standardizedPath("/"), "/");
    EXPECT_EQ(standardizedPath(""), "");
}

TEST(Paths, DotsAndDoubledSlashesGo) {
    EXPECT_EQ(standardizedPath("//a//b/./c/"), "/a/b/c");
    EXPECT_EQ(standardizedPath("/a/b/../c"), "/a/c");
    EXPECT_EQ(standardizedPath("/a/b/.."), "/a");
    EXPECT_EQ(standardizedPath("/a/.../..b/c.."), "/a/.../..b/c..");
}

TEST(Paths, NothingLiesAboveTheRoot) {
    EXPECT_EQ(standardizedPath("/.."), "/");
    EXPECT_EQ(standardizedPath("/../../a/../.."), "/");
}

TEST(Paths, ARelativePathStaysRelative) {
    EXPECT_EQ(standardizedPath("a/./b//c/"), "a/b/c");
    EXPECT_EQ(standardizedPath("../a/../../b"), "../../b");
    EXPECT_EQ(standardizedPath("a/.."), ".");
}

TEST(Paths, ALeadingTildeIsTheHomeFolder) {
    const ScopedEnvironment home("HOME", "/home/ana/");
    EXPECT_EQ(standardizedPath("~"), "/home/ana");
    EXPECT_EQ(standardizedPath("~/x/../y"), "/home/ana/y");
    EXPECT_EQ(standardizedPath("~bob/x"), "~bob/x");
    EXPECT_EQ(standardizedPath("/a/~"), "/a/~");
}

TEST(Paths, TheHomeFolderComesFromTheEnvironmentThenFromTheUserDatabase) {
    {
        const ScopedEnvironment home("HOME", "/home/ana");
        EXPECT_EQ(homeFolder(), FileURL("/home/ana"));
    }
    const passwd* recorded = getpwuid(getuid());
    const FileURL fallback(recorded && recorded->pw_dir[0] == '/' ? recorded->pw_dir : "/");
    {
        const ScopedEnvironment home("HOME", std::nullopt);
        EXPECT_EQ(homeFolder(), fallback);
    }
    const ScopedEnvironment home("HOME", "relative");
    EXPECT_EQ(homeFolder(), fallback);
}

TEST(Paths, TheTemporaryFolderIsTmpdirWhenThatIsAbsolute) {
    {
        const ScopedEnvironment folder("TMPDIR", "/var/tmp/x/");
        EXPECT_EQ(temporaryFolder(), FileURL("/var/tmp/x"));
    }
    {
        const ScopedEnvironment folder("TMPDIR", "x");
        EXPECT_EQ(temporaryFolder(), FileURL("/tmp"));
    }
    const ScopedEnvironment folder("TMPDIR", std::nullopt);
    EXPECT_EQ(temporaryFolder(), FileURL("/tmp"));
}

TEST(Paths, WellFormedUtf8IsTold) {
    for (const char* text : {"", "plain", "ä", "日本", "😀", "\xF4\x8F\xBF\xBF", "\xEF\xBF\xBD"})
        EXPECT_TRUE(isUtf8(text)) << text;
    EXPECT_TRUE(isUtf8(std::string_view("a\0b", 3)));
    for (const char* text :
         {"\xff", "a\x80", "\xC3", "\xC0\xAF", "\xC1\xBF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xF0\x80\x80\x80",
          "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xE6\x97", "\xE6\x97g"})
        EXPECT_FALSE(isUtf8(text)) << escapedForDisplay(text);
}

TEST(Paths, WhatIsNoTextIsShownEscapedByteByByte) {
    EXPECT_EQ(escapedForDisplay("caf\xE9 \xC3\xA9 日本"), "caf\\xE9 é 日本");
    EXPECT_EQ(escapedForDisplay("\xE6\x97"), "\\xE6\\x97");
    EXPECT_EQ(escapedForDisplay("\xED\xA0\x80"), "\\xED\\xA0\\x80");
}

TEST(Paths, ControlCharactersAreShownEscaped) {
    EXPECT_EQ(escapedForDisplay("a\nb\tc\x7F\x1B"), "a\\x0Ab\\x09c\\x7F\\x1B");
    EXPECT_EQ(escapedForDisplay("\xC2\x85x\xC2\xA0"), "\\xC2\\x85x\xC2\xA0");
    EXPECT_EQ(escapedForDisplay(std::string_view("a\0b", 3)), "a\\x00b");
}

} // namespace
} // namespace vesko
