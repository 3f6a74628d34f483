#include "probes/DockerListings.h"

#include "support/Fixtures.h"
#include "support/LanguageScope.h"
#include "support/PortugueseLocale.h"
#include <gmock/gmock.h>

namespace vesko {
namespace {

using ::testing::ElementsAre;
using testing::fixture;
using ::testing::IsEmpty;
using testing::LanguageScope;
using ::testing::SizeIs;

const FileURL data("/home/a/data");

TEST(DockerListings, TheListingOfARealClientIsRead) {
    EXPECT_THAT(
        parseDockerImages(fixture("docker/image-ls.txt")),
        ElementsAre(DockerImageLine{"4bf5122f3445", "postgres:16", 431'000'000},
                    DockerImageLine{"dbc1b4c900ff", "node:20", 1'100'000'000},
                    DockerImageLine{"dbc1b4c900ff", "node:latest", 1'100'000'000},
                    DockerImageLine{"084fed08b978", "<none>:<none>", 212'000'000},
                    DockerImageLine{"e52d9c508c50", "edge:thousand", 1'000'000},
                    DockerImageLine{"e77b9a9ae9e3", "registry.example.com:5000/team/tool:v1.2-rc.3", 13'300},
                    DockerImageLine{"67586e98fad2", "hello-world:latest", 13},
                    DockerImageLine{"ca358758f6d2", "scratch-like:empty", 0},
                    DockerImageLine{"beead77994cf", "models:huge", 2'340'000'000'000},
                    // "archive:beyond" has 1.5PB, a unit that is not read.
                    DockerImageLine{"01ba4719c80b", "edge:below", 1'000'000'000},
                    DockerImageLine{"e7cf46a078fe", "edge:kilo", 1'000},
                    DockerImageLine{"ef6cbd2161ea", "edge:byte", 999}));
}

TEST(DockerListings, AnImageLineThatCannotBeReadIsPassedOver) {
    EXPECT_THAT(parseDockerImages(fixture("docker/written-by-hand/image-ls-odd.txt")),
                ElementsAre(DockerImageLine{"27ae41e4649b", "<none>:<none>", 77'800'000},
                            DockerImageLine{"934ca495991b", "whole:terabyte", 1'000'000'000'000}));
}

TEST(DockerListings, ColumnsStandBetweenTwoBlanksAndEmptyOnesDoNotCount) {
    EXPECT_THAT(parseDockerImages(" \ta    b:c      1B  more  columns \r\n"),
                ElementsAre(DockerImageLine{"a", "b:c", 1}));
    EXPECT_THAT(parseDockerImages("a   b:c   1B"), ElementsAre(DockerImageLine{"a", " b:c", 1}));
    EXPECT_THAT(parseDockerImages("a b:c 1B\na  b:c 1B\n"), IsEmpty());
}

TEST(DockerListings, WhatLooksLikeAnOptionOrShellTextStaysAsItIs) {
    EXPECT_THAT(parseDockerImages("--help  $(touch x); rm:--all  1kB\n"),
                ElementsAre(DockerImageLine{"--help", "$(touch x); rm:--all", 1000}));
    EXPECT_THAT(parseDockerVolumes(fixture("docker/written-by-hand/volume-ls-odd.txt")),
                ElementsAre("plain", "indented", "--help", "$(touch x); rm", "two words"));
}

TEST(DockerListings, TheVolumesOfARealClientAreRead) {
    EXPECT_THAT(parseDockerVolumes(fixture("docker/volume-ls.txt")),
                ElementsAre("0f3c1f6b8c0d4f5e9a7b6c5d4e3f2a1b0c9d8e7f6a5b4c3d2e1f0a9b8c7d6e5f",
                            "atlas_postgres-data", "weather_redis"));
}

TEST(DockerListings, OnlyBlanksAndTabsAreTrimmedFromAVolume) {
    EXPECT_THAT(parseDockerVolumes(" \t name \t\n"), ElementsAre("name"));
    EXPECT_THAT(parseDockerVolumes("name\r\n\u00a0\n"), ElementsAre("name\r", "\u00a0"));
}

TEST(DockerListings, TheBuildCacheOfARealClientIsRead) {
    const LanguageScope english(Language::english);
    const auto item = parseBuildCacheLine(fixture("docker/system-df.txt"), data);
    ASSERT_TRUE(item);
    ScannableItem expected;
    expected.url = FileURL("/home/a/data/buildcache");
    expected.size = 1'500'000'000;
    expected.isDirectory = true;
    expected.enrichmentKey = {"docker:prune:buildcache"};
    expected.displayLabel = "Docker build cache";
    EXPECT_EQ(*item, expected);
    EXPECT_EQ(item->name(), "buildcache");
}

TEST(DockerListings, TheBuildCacheIsCalledByItsTitleInTheCurrentLanguage) {
    const LanguageScope portuguese(Language::portuguese);
    EXPECT_EQ(parseBuildCacheLine("Build Cache\t1B", data)->displayLabel, "Cache de construção do Docker");
}

std::optional<std::int64_t> cacheSize(std::string_view output) {
    const auto item = parseBuildCacheLine(output, data);
    if (!item) return std::nullopt;
    return item->size;
}

TEST(DockerListings, ThePlainTableGivesNothingSinceItsFourthWordIsACount) {
    EXPECT_EQ(cacheSize(fixture("docker/system-df-table.txt")), std::nullopt);
    EXPECT_EQ(cacheSize(fixture("docker/system-df-table-empty.txt")), std::nullopt);
}

TEST(DockerListings, TheFourthWordIsTheSizeWhereItHasAUnit) {
    EXPECT_EQ(cacheSize(fixture("docker/written-by-hand/system-df-table-odd.txt")), 3'000'000'000);
    EXPECT_EQ(cacheSize("Build Cache 5 2kB"), 2000);
    EXPECT_EQ(cacheSize("Build Cache 2kB"), std::nullopt) << "three words";
}

TEST(DockerListings, TheSecondFieldGoesBeforeTheFourthWord) {
    EXPECT_EQ(cacheSize("Build Cache\t1kB 2kB"), 2000) << "the field is no size, the fourth word is";
    EXPECT_EQ(cacheSize("Build Cache\t1kB\t2kB"), 1000);
    EXPECT_EQ(cacheSize("Build Cache 7\t1kB\t2kB"), 1000);
    EXPECT_EQ(cacheSize("Build Cache\tmuch\t2kB"), 2000) << "an unreadable field leaves the words";
    EXPECT_EQ(cacheSize("\t1kB\tBuild Cache"), 1000);
}

TEST(DockerListings, TheLineIsFoundInAnyCaseAndTheFirstWithASizeCounts) {
    EXPECT_EQ(cacheSize("Images\t9GB\nBUILD CACHE\t1kB\nbuild cache\t2kB\n"), 1000);
    EXPECT_EQ(cacheSize("Build Cache\tunknown\nthe build caches\t2kB\n"), 2000);
    EXPECT_EQ(cacheSize("Images\t9GB\nBuildCache\t1kB\n"), std::nullopt);
    EXPECT_EQ(cacheSize("Build Cache\t0B"), 0);
}

TEST(DockerListings, NothingPrintedIsNothingFound) {
    for (const char* output : {"", "\n", "\n\n  \n\t\n"}) {
        EXPECT_THAT(parseDockerImages(output), IsEmpty());
        EXPECT_THAT(parseDockerVolumes(output), IsEmpty());
        EXPECT_EQ(cacheSize(output), std::nullopt);
    }
}

TEST(DockerListings, HalfADocumentGivesItsWholeLines) {
    const std::string whole = fixture("docker/image-ls.txt");
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const std::string half = whole.substr(0, length);
        const auto lines = static_cast<std::size_t>(std::count(half.begin(), half.end(), '\n'));
        // The one line in between that is not read stands tenth.
        const std::size_t readable = lines - (lines >= 10 ? 1 : 0);
        const std::size_t found = parseDockerImages(half).size();
        EXPECT_GE(found, readable);
        EXPECT_LE(found, readable + 1);
    }
}

TEST(DockerListings, APersonsLocaleChangesNothing) {
    const std::vector<DockerImageLine> before = parseDockerImages(fixture("docker/image-ls.txt"));
    const testing::PortugueseLocale locale;
    const LanguageScope portuguese(Language::portuguese);
    if (!locale.isThere()) GTEST_SKIP() << "no pt_BR locale here";
    EXPECT_EQ(parseDockerImages(fixture("docker/image-ls.txt")), before);
    EXPECT_EQ(cacheSize(fixture("docker/system-df.txt")), 1'500'000'000);
    EXPECT_EQ(cacheSize("BUILD CACHE\t1,5GB"), std::nullopt);
}

/// A hundred million bytes of whatever a broken tool might print.
std::string flood(std::string_view pattern) {
    constexpr std::size_t length = 100'000'000;
    std::string made;
    made.reserve(length + pattern.size());
    while (made.size() < length) made += pattern;
    return made;
}

TEST(DockerListings, AFloodOfLinesIsReadWithoutHarm) {
    const std::string lines = flood("some garbage  of two columns\n");
    EXPECT_THAT(parseDockerImages(lines), IsEmpty());
    EXPECT_EQ(cacheSize(lines), std::nullopt);
    EXPECT_THAT(parseDockerVolumes(lines), SizeIs((lines.size() + 28) / 29));
}

TEST(DockerListings, OneLineThatNeverEndsIsReadWithoutHarm) {
    const std::string line = flood("é  ");
    EXPECT_THAT(parseDockerImages(line), IsEmpty());
    EXPECT_EQ(cacheSize(line + "\nBuild Cache\t1kB\n"), 1000);
    EXPECT_THAT(parseDockerVolumes(line), SizeIs(1));
}

} // namespace
} // namespace vesko
