#include "background/VersionOrder.h"
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace vesko {
namespace {

TEST(VersionOrder, EveryVersionIsNewerThanThoseBeforeIt) {
    const std::vector<std::string> rising{"0",
                                          "0.0.1",
                                          "0.1",
                                          "0.9",
                                          "0.10",
                                          "1.0-alpha",
                                          "1.0-alpha.1",
                                          "1.0-alpha.beta",
                                          "1.0-beta",
                                          "1.0-beta.2",
                                          "1.0-beta.11",
                                          "1.0-rc.1",
                                          "1.0",
                                          "1.0.0.1",
                                          "1.9",
                                          "1.10",
                                          "2-1",
                                          "2-x",
                                          "2.0",
                                          "99999999999999999999",
                                          "100000000000000000000"};
    for (std::size_t one = 0; one < rising.size(); ++one)
        for (std::size_t other = 0; other < rising.size(); ++other)
            EXPECT_EQ(isNewerVersion(rising[one], rising[other]), one > other)
                << rising[one] << " and " << rising[other];
}

TEST(VersionOrder, MissingPartsLeadingZerosAndWhatFollowsAPlusDoNotCount) {
    for (const auto& [first, second] : std::vector<std::pair<std::string, std::string>>{
             {"1", "1.0.0"}, {"1.10", "1.10.0"}, {"01.2", "1.02"}, {"1.2+5", "1.2+6"}, {"1.2-a+5", "1.2-a"}})
        EXPECT_EQ(compareVersions(first, second), std::strong_ordering::equal) << first << " and " << second;
}

TEST(VersionOrder, WhatIsNoVersionIsNeverNewer) {
    const std::vector<std::string> odd{
        "",   "v2",     "2.",         ".2",  "2..1", "2.x", "2 ",
        "2-", "2-a..b", "2-\xC3\xA4", "two", "-1",   "2\n", std::string(65, '9')};
    for (const std::string& text : odd) {
        EXPECT_EQ(compareVersions(text, "1.0"), std::nullopt) << text;
        EXPECT_FALSE(isNewerVersion(text, "1.0")) << text;
        EXPECT_FALSE(isNewerVersion("1.0", text)) << text;
    }
    EXPECT_TRUE(isNewerVersion(std::string(64, '9'), "1.0"));
}

} // namespace
} // namespace vesko
