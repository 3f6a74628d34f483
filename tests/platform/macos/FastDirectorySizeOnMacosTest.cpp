#include "core/FastDirectorySize.h"
#include "platform/macos/FakeAttributes.h"
#include <cerrno>
#include <gtest/gtest.h>

namespace vesko {
namespace {

using testing::fakeAttributes;

class FastDirectorySizeOnMacos : public ::testing::Test {
protected:
    FastDirectorySizeOnMacos() { fakeAttributes() = {}; }
    ~FastDirectorySizeOnMacos() override { fakeAttributes() = {}; }
};

TEST_F(FastDirectorySizeOnMacos, AsksForTheAllocatedSizeAloneWithEightBytesAndNoOptions) {
    fastDirectorySize(FileURL("/Users/ana/Caches e restos"), false);
    const auto& asked = fakeAttributes().asked;
    EXPECT_EQ(asked.path, "/Users/ana/Caches e restos");
    EXPECT_EQ(asked.wanted.bitmapcount, 5);
    EXPECT_EQ(asked.wanted.commonattr, 0U);
    EXPECT_EQ(asked.wanted.volattr, 0U);
    EXPECT_EQ(asked.wanted.dirattr, 8U);
    EXPECT_EQ(asked.wanted.fileattr, 0U);
    EXPECT_EQ(asked.wanted.forkattr, 0U);
    EXPECT_EQ(asked.size, 8U);
    EXPECT_EQ(asked.options, 0U);
}

TEST_F(FastDirectorySizeOnMacos, GivesTheAnswerAsItStands) {
    fakeAttributes().answer = std::string("\x0C\0\0\0\x02\0\0\0", 8);
    EXPECT_EQ(fastDirectorySize(FileURL("/Users"), false), 0x2'0000'000C);
    EXPECT_EQ(fastDirectorySize(FileURL("/Users"), true), 0x2'0000'000C);
}

/// A file has no attribute of folders, so that only the length word comes.
TEST_F(FastDirectorySizeOnMacos, GivesNothingWhereTheAttributeIsNotKept) {
    fakeAttributes().answer = std::string("\x04\0\0\0", 4);
    EXPECT_EQ(fastDirectorySize(FileURL("/Users/file"), false), std::nullopt);
    fakeAttributes().answer = std::string("\x0C\0\0\0\0\0\0\0", 8);
    EXPECT_EQ(fastDirectorySize(FileURL("/Users"), false), std::nullopt);
}

TEST_F(FastDirectorySizeOnMacos, GivesNothingForAFailingCall) {
    fakeAttributes().answer = std::string("\x0C\0\0\0\x02\0\0\0", 8);
    for (const int failure : {ENOENT, EACCES, EDEADLK, ENOTSUP}) {
        fakeAttributes().failure = failure;
        EXPECT_EQ(fastDirectorySize(FileURL("/missing"), false), std::nullopt);
    }
}

} // namespace
} // namespace vesko
