#include "core/DiskUsage.h"

#include "support/PortugueseLocale.h"
#include "support/TempTree.h"
#include <gmock/gmock.h>
#include <sys/stat.h>

namespace vesko {
namespace {

using ::testing::ElementsAre;
using testing::TempTree;

struct Line {
    std::string_view output;
    std::int64_t bytes;
};
const Line lines[] = {
    {"12\t/home/x\n", 12 * 1024},
    {"12", 12 * 1024},
    {"\n\n7 /x\n9 /y\n", 7 * 1024},
    {"  \t 5\t/x", 5 * 1024},
    {"0\t/x\n", 0},
    {"", 0},
    {"\n\n\n", 0},
    {"   \n3\t/x\n", 0}, // a line of blanks is a line, and has no word
    {"twelve\t/x\n", 0},
    {"12K\t/x\n", 0},
    {"1.5\t/x\n", 0},
    {"1,5\t/x\n", 0},
    {"1.234\t/x\n", 0},
    {"+4\t/x\n", 4 * 1024},
    {"+-4\t/x\n", 0},
    {"-4\t/x\n", -4 * 1024},
    {"0x10\t/x\n", 0},
    {"99999999999999999999\t/x\n", 0},
    {"8\t/x/\xff\n", 0},
};

void expectAllLinesRead() {
    for (const Line& line : lines) EXPECT_EQ(bytesFromDuOutput(line.output), line.bytes) << line.output;
}

TEST(DiskUsage, TheFirstWordOfTheFirstLineIsTheAmount) { expectAllLinesRead(); }

TEST(DiskUsage, AmountsAreReadTheSameInAnotherLocale) {
    const testing::PortugueseLocale locale;
    if (!locale.isThere()) GTEST_SKIP() << "the locale pt_BR.UTF-8 can't be made on this machine";
    ASSERT_STREQ(localeconv()->decimal_point, ",");
    expectAllLinesRead();
}

TEST(DiskUsageDeathTest, AnAmountBeyond63BitsStopsTheProcess) {
    EXPECT_DEATH(bytesFromDuOutput("9223372036854775807\t/x\n"), "does not fit 63 bits");
}

TEST(DiskUsage, TheProgramIsAskedForKibibytesOfOneTotal) {
    std::vector<std::string> asked;
    const auto run = [&](const std::string& executable, const std::vector<std::string>& arguments) {
        asked = arguments;
        asked.insert(asked.begin(), executable);
        return ChildResult{0, "3\t/a b\n"};
    };
    EXPECT_EQ(duProgramSize(FileURL("/a b"), false, run), 3 * 1024);
    EXPECT_THAT(asked, ElementsAre("/usr/bin/du", "-sk", "/a b"));
    EXPECT_EQ(duProgramSize(FileURL("/a b"), true, run), 3 * 1024);
    EXPECT_THAT(asked, ElementsAre("/usr/bin/du", "-L", "-sk", "/a b"));
}

TEST(DiskUsage, AFailingExitStatusDoesNotCount) {
    const auto run = [](const auto&, const auto&) { return ChildResult{1, "3\t/a\n"}; };
    EXPECT_EQ(duProgramSize(FileURL("/a"), false, run), 3 * 1024);
}

TEST(DiskUsage, ARefusedLaunchIsZero) {
    const auto run = [](const auto&, const auto&) -> std::optional<ChildResult> { return std::nullopt; };
    EXPECT_EQ(duProgramSize(FileURL("/a"), false, run), 0);
}

TEST(DiskUsage, AFolderIsMeasuredByTheProgram) {
    const TempTree tree;
    tree.file("folder/a", std::string(100'000, 'x'));
    const std::int64_t bytes = duSize(tree.url("folder"), false);
    EXPECT_GE(bytes, 100'000);
    EXPECT_LT(bytes, 200'000);
    EXPECT_EQ(bytes % 1024, 0);
}

TEST(DiskUsage, AFileHasTheFigureThatTheProgramGives) {
    const TempTree tree;
    for (const std::size_t length : {0U, 1U, 4096U, 4097U, 300'001U}) {
        const FileURL file = tree.file("file" + std::to_string(length), std::string(length, 'x'));
        EXPECT_EQ(duSize(file, false), duProgramSize(file, false, runChild)) << length;
        EXPECT_EQ(duSize(file, true), duProgramSize(file, true, runChild)) << length;
    }
}

TEST(DiskUsage, ALinkToAFileIsFollowedOnlyOnRequest) {
    const TempTree tree;
    tree.file("large", std::string(300'000, 'x'));
    const FileURL link = tree.link("link", "large");
    EXPECT_EQ(duSize(link, false), duProgramSize(link, false, runChild));
    EXPECT_EQ(duSize(link, true), duProgramSize(link, true, runChild));
    EXPECT_GE(duSize(link, true), 300'000);
}

TEST(DiskUsage, ANameThatIsNoUtf8MeasuresZeroByTheProgram) {
    const TempTree tree;
    tree.file("caf\xe9/a", std::string(100'000, 'x'));
    EXPECT_EQ(duProgramSize(tree.url("caf\xe9"), false, runChild), 0);
}

TEST(DiskUsage, AMissingPathIsZero) { EXPECT_EQ(duSize(FileURL("/no/such/place"), false), 0); }

} // namespace
} // namespace vesko
