#include "base/ByteFormat.h"

#include "base/LanguageGuard.h"
#include <gtest/gtest.h>
#include <limits>
#include <utility>

namespace vesko {
namespace {

struct Sample {
    std::int64_t bytes;
    const char* english;
    const char* portuguese;
};

void expectSamples(std::initializer_list<Sample> samples) {
    for (const Sample& sample : samples) {
        LanguageGuard language(Language::english);
        EXPECT_EQ(formatBytes(sample.bytes), sample.english) << sample.bytes;
        setCurrentLanguage(Language::portuguese);
        EXPECT_EQ(formatBytes(sample.bytes), sample.portuguese) << sample.bytes;
    }
}

TEST(ByteFormat, LessThanAKilobyteIsAnAmountInKilobytes) {
    expectSamples({{0, "0 KB", "0 KB"},
                   {1, "0 KB", "0 KB"},
                   {499, "0 KB", "0 KB"},
                   {501, "1 KB", "1 KB"},
                   {999, "1 KB", "1 KB"}});
}

TEST(ByteFormat, KilobytesHaveNoFraction) {
    expectSamples({{1'000, "1 KB", "1 KB"},
                   {1'499, "1 KB", "1 KB"},
                   {12'345, "12 KB", "12 KB"},
                   {999'000, "999 KB", "999 KB"}});
}

TEST(ByteFormat, HalvesGoToTheEvenNeighbour) {
    expectSamples({{500, "0 KB", "0 KB"},
                   {1'500, "2 KB", "2 KB"},
                   {2'500, "2 KB", "2 KB"},
                   {2'501, "3 KB", "3 KB"},
                   {1'250'000, "1.2 MB", "1,2 MB"},
                   {1'350'000, "1.4 MB", "1,4 MB"},
                   {1'005'000'000, "1 GB", "1 GB"},
                   {1'015'000'000, "1.02 GB", "1,02 GB"},
                   {1'015'000'000'000, "1.02 TB", "1,02 TB"}});
}

TEST(ByteFormat, MegabytesHaveAtMostOneDigit) {
    expectSamples({{1'000'000, "1 MB", "1 MB"},
                   {1'049'999, "1 MB", "1 MB"},
                   {52'428'800, "52.4 MB", "52,4 MB"},
                   {999'900'000, "999.9 MB", "999,9 MB"}});
}

TEST(ByteFormat, LargerUnitsHaveAtMostTwoDigitsAndNoTrailingZeros) {
    expectSamples({{1'000'000'000, "1 GB", "1 GB"},
                   {3'100'000'000, "3.1 GB", "3,1 GB"},
                   {3'140'000'000, "3.14 GB", "3,14 GB"},
                   {3'010'000'000, "3.01 GB", "3,01 GB"},
                   {494'384'795'648, "494.38 GB", "494,38 GB"},
                   {2'000'398'934'016, "2 TB", "2 TB"},
                   {1'500'000'000'000, "1.5 TB", "1,5 TB"}});
}

TEST(ByteFormat, AFigureThatRoundsToAThousandMovesToTheNextUnit) {
    expectSamples({{999'499, "999 KB", "999 KB"},
                   {999'500, "1 MB", "1 MB"},
                   {999'949'999, "999.9 MB", "999,9 MB"},
                   {999'950'000, "1 GB", "1 GB"},
                   {999'994'999'999, "999.99 GB", "999,99 GB"},
                   {999'995'000'000, "1 TB", "1 TB"}});
}

TEST(ByteFormat, TerabytesGoOnWithGroupedDigits) {
    expectSamples({{1'000'000'000'000'000, "1,000 TB", "1.000 TB"},
                   {std::numeric_limits<std::int64_t>::max(), "9,223,372.04 TB", "9.223.372,04 TB"}});
}

TEST(ByteFormat, ANegativeAmountHasAMinusSignUnlessItRoundsToZero) {
    expectSamples({{-1, "0 KB", "0 KB"},
                   {-1'500, "-2 KB", "-2 KB"},
                   {-1'250'000, "-1.2 MB", "-1,2 MB"},
                   {std::numeric_limits<std::int64_t>::min(), "-9,223,372.04 TB", "-9.223.372,04 TB"}});
}

} // namespace
} // namespace vesko
