#include "probes/DockerSize.h"

#include "support/PortugueseLocale.h"
#include <gtest/gtest.h>
#include <limits>

namespace vesko {
namespace {

using Bytes = std::optional<std::int64_t>;

TEST(DockerSize, EveryUnitIsDecimal) {
    EXPECT_EQ(parseDockerSize("2TB"), Bytes(2'000'000'000'000));
    EXPECT_EQ(parseDockerSize("1.5GB"), Bytes(1'500'000'000));
    EXPECT_EQ(parseDockerSize("431MB"), Bytes(431'000'000));
    EXPECT_EQ(parseDockerSize("13.3kB"), Bytes(13'300));
    EXPECT_EQ(parseDockerSize("999B"), Bytes(999));
    EXPECT_EQ(parseDockerSize("0B"), Bytes(0));
}

TEST(DockerSize, TheCaseOfTheUnitDoesNotMatter) {
    for (const char* text : {"512mb", "512MB", "512Mb", "512mB"})
        EXPECT_EQ(parseDockerSize(text), Bytes(512'000'000)) << text;
}

TEST(DockerSize, ThousandsAreWrittenWithAnExponentByTheTool) {
    EXPECT_EQ(parseDockerSize("1e+03MB"), Bytes(1'000'000'000));
    EXPECT_EQ(parseDockerSize("1E+03kB"), Bytes(1'000'000));
}

TEST(DockerSize, ANumberWithoutAUnitIsNone) {
    for (const char* text : {"0", "1234", "1.5", ""}) EXPECT_EQ(parseDockerSize(text), std::nullopt) << text;
}

TEST(DockerSize, AUnitWithoutANumberIsNone) {
    for (const char* text : {"B", "GB", " TB ", "-B", "+B", ".B", "e3B", "eB"})
        EXPECT_EQ(parseDockerSize(text), std::nullopt) << text;
}

TEST(DockerSize, BinaryUnitsAndLargerOnesAreNone) {
    for (const char* text : {"1MiB", "1.5GiB", "1KiB", "1.5PB", "2EB", "1ZB"})
        EXPECT_EQ(parseDockerSize(text), std::nullopt) << text;
}

TEST(DockerSize, WhiteSpaceAroundAndBeforeTheUnitIsTrimmed) {
    EXPECT_EQ(parseDockerSize("  \t1.5 \t GB\r\n"), Bytes(1'500'000'000));
    EXPECT_EQ(parseDockerSize("\u00a01GB\u2003"), Bytes(1'000'000'000));
    // Only blanks and tabs go before the unit.
    EXPECT_EQ(parseDockerSize("1\nGB"), std::nullopt);
    EXPECT_EQ(parseDockerSize("1\u00a0GB"), std::nullopt);
}

TEST(DockerSize, AllOfTheTextHasToBeTheNumber) {
    for (const char* text : {"1.5.5GB", "1 5GB", "1,5GB", "1.5GBGB", "1.5 GB (100%)", "x1GB", "1xGB", "1GBx"})
        EXPECT_EQ(parseDockerSize(text), std::nullopt) << text;
    EXPECT_EQ(parseDockerSize(std::string_view("1\0GB", 4)), std::nullopt);
    EXPECT_EQ(parseDockerSize(std::string_view("\0"
                                               "1GB",
                                               4)),
              std::nullopt);
}

TEST(DockerSize, FractionsOfAByteAreCutOffTowardZero) {
    EXPECT_EQ(parseDockerSize("1.9B"), Bytes(1));
    EXPECT_EQ(parseDockerSize("0.9999kB"), Bytes(999));
    EXPECT_EQ(parseDockerSize("-1.9B"), Bytes(-1));
    EXPECT_EQ(parseDockerSize("1e-400GB"), Bytes(0));
}

TEST(DockerSize, ANegativeAmountStaysNegative) { EXPECT_EQ(parseDockerSize("-1GB"), Bytes(-1'000'000'000)); }

TEST(DockerSize, WhatDoesNotFitIsNone) {
    EXPECT_EQ(parseDockerSize("9223372036854774784B"), Bytes(9'223'372'036'854'774'784));
    EXPECT_EQ(parseDockerSize("9223372036854775808B"), std::nullopt);
    EXPECT_EQ(parseDockerSize("-9223372036854775808B"), Bytes(std::numeric_limits<std::int64_t>::min()));
    EXPECT_EQ(parseDockerSize("-9223372036854777856B"), std::nullopt);
    for (const char* text : {"1e7TB", "1e400B", "-1e400B", "infB", "nanB", "-infinityTB", "1e308TB"})
        EXPECT_EQ(parseDockerSize(text), std::nullopt) << text;
}

TEST(DockerSize, APersonsLocaleChangesNothing) {
    const testing::PortugueseLocale locale;
    if (!locale.isThere()) GTEST_SKIP() << "no pt_BR locale here";
    EXPECT_EQ(parseDockerSize("1.5GB"), Bytes(1'500'000'000));
    EXPECT_EQ(parseDockerSize("1,5GB"), std::nullopt);
    EXPECT_EQ(parseDockerSize("1.500.000B"), std::nullopt);
    EXPECT_EQ(parseDockerSize("1.743gb"), Bytes(1'743'000'000));
}

TEST(DockerSize, TextOfAnyLengthAndAnyBytesIsRead) {
    EXPECT_EQ(parseDockerSize("caf\xe9\xff GB"), std::nullopt);
    EXPECT_EQ(parseDockerSize("\xff"), std::nullopt);
    EXPECT_EQ(parseDockerSize(std::string(10'000'000, '9') + "GB"), std::nullopt);
    EXPECT_EQ(parseDockerSize(std::string(10'000'000, '0') + "1GB"), Bytes(1'000'000'000));
    EXPECT_EQ(parseDockerSize(std::string(10'000'000, ' ')), std::nullopt);
}

} // namespace
} // namespace vesko
