#include "probes/InstallerKey.h"

#include "support/PortugueseLocale.h"
#include <clocale>
#include <gtest/gtest.h>

namespace vesko {
namespace {

TEST(InstallerKey, TwoVersionsOfOneImageShareAKey) {
    EXPECT_EQ(installerKey("Tool-1.4.2.dmg"), "installer:tool");
    EXPECT_EQ(installerKey("Tool-2.0.dmg"), "installer:tool");
    EXPECT_EQ(installerKey("Tool_Setup-1.4.2-arm64.dmg"), "installer:tool setup");
    EXPECT_EQ(installerKey("Tool Setup v2.0 x64.dmg"), "installer:tool setup");
    EXPECT_NE(installerKey("Tool-1.4.2.dmg"), installerKey("Tool Setup-1.4.2.dmg"));
}

TEST(InstallerKey, TheExtensionOfAnImageIsCutInAnyCase) {
    EXPECT_EQ(installerKey("Tool.dmg"), "installer:tool");
    EXPECT_EQ(installerKey("Tool.DMG"), "installer:tool");
    EXPECT_EQ(installerKey("TOOL.Dmg"), "installer:tool");
    EXPECT_EQ(installerKey("Tool.dmg.dmg"), "installer:tool.dmg");
}

TEST(InstallerKey, TheCutKeepsTheCaseUntilTheWordsAreChosen) {
    // Lower-cased first, this letter would be two code points, and the cut would take the wrong bytes.
    EXPECT_EQ(installerKey("\xC4\xB0stanbul.DMG"), "installer:i\xCC\x87stanbul");
    EXPECT_EQ(installerKey("\xC4\xB0.dmg"), "installer:i\xCC\x87");
}

TEST(InstallerKey, APackageKeepsItsExtensionAndWithItItsVersion) {
    EXPECT_EQ(installerKey("Tool-1.4.2.pkg"), "installer:tool 1.4.2.pkg");
    EXPECT_EQ(installerKey("Tool-1.5.0.pkg"), "installer:tool 1.5.0.pkg");
    EXPECT_EQ(installerKey("Tool.PKG"), "installer:tool.pkg");
    EXPECT_EQ(installerKey("Tool_15.4.xip"), "installer:tool 15.4.xip");
}

TEST(InstallerKey, AVersionBeforeTheLastWordEndsTheNameOfAPackageToo) {
    EXPECT_EQ(installerKey("Tool-1.4.2-arm64.pkg"), "installer:tool");
    EXPECT_EQ(installerKey("Tool 15.4 Universal.xip"), "installer:tool");
}

TEST(InstallerKey, AWordOfDigitsAndDotsEndsTheName) {
    EXPECT_EQ(installerKey("Tool v3.dmg"), "installer:tool");
    EXPECT_EQ(installerKey("Tool V3.1.dmg"), "installer:tool");
    EXPECT_EQ(installerKey("Tool 2024 Pro.dmg"), "installer:tool");
    EXPECT_EQ(installerKey("Tool 1. Pro.dmg"), "installer:tool");
}

TEST(InstallerKey, AWordWithAnyOtherLetterDoesNotEndTheName) {
    EXPECT_EQ(installerKey("Tool 2b 1.0.dmg"), "installer:tool 2b");
    EXPECT_EQ(installerKey("Tool x64.dmg"), "installer:tool x64");
    EXPECT_EQ(installerKey("Tool vv1 1.0.dmg"), "installer:tool vv1");
    EXPECT_EQ(installerKey("Tool v 1.0.dmg"), "installer:tool v");
    EXPECT_EQ(installerKey("Tool .5.dmg"), "installer:tool .5");
}

TEST(InstallerKey, ANameThatBeginsWithAVersionKeepsJustThat) {
    EXPECT_EQ(installerKey("1.2.3.dmg"), "installer:1.2.3");
    EXPECT_EQ(installerKey("v2.0-beta.dmg"), "installer:v2.0");
    EXPECT_EQ(installerKey("2024 Tool 1.0.dmg"), "installer:2024");
    EXPECT_EQ(installerKey("1.2.3.pkg"), "installer:1.2.3.pkg");
}

TEST(InstallerKey, WithoutAnyWordTheStemItselfIsTheKey) {
    EXPECT_EQ(installerKey("-_-.dmg"), "installer:-_-");
    EXPECT_EQ(installerKey("___"), "installer:___");
    EXPECT_EQ(installerKey(" .DMG"), "installer: ");
    EXPECT_EQ(installerKey(".dmg"), "installer:");
    EXPECT_EQ(installerKey(""), "installer:");
}

TEST(InstallerKey, BlanksBetweenWordsCountOnce) {
    EXPECT_EQ(installerKey("  Tool__-_Pro   1.0.dmg"), "installer:tool pro");
}

TEST(InstallerKey, BytesThatAreNoUtf8Stay) {
    EXPECT_EQ(installerKey("Caf\xE9 Tool-1.0.dmg"), "installer:caf\xE9 tool");
    EXPECT_EQ(installerKey("\xFF\xFE.DMG"), "installer:\xFF\xFE");
    EXPECT_EQ(installerKey(std::string_view("a\0B.dmg", 7)), std::string("installer:a\0b", 13));
}

TEST(InstallerKey, EveryLocaleGivesTheSameKey) {
    const auto keys = [] {
        return installerKey("INSTALL-1.5.dmg") + installerKey("A\xC3\x87\xC3\x83O 1,5 x.dmg") +
               installerKey("III.DMG");
    };
    const std::string expected = "installer:install"
                                 "installer:a\xC3\xA7\xC3\xA3o 1,5 x"
                                 "installer:iii";
    EXPECT_EQ(keys(), expected);
    const testing::PortugueseLocale portuguese;
    if (!portuguese.isThere()) GTEST_SKIP() << "pt_BR can't be had here";
    EXPECT_EQ(keys(), expected);
}

TEST(InstallerKey, ALetterWhoseSmallFormHasADotIsFoldedByTheRootLocale) {
    // A Turkish reader's "I" has a small form without a dot; a key must not depend on who made it.
    EXPECT_EQ(installerKey("DISK.dmg"), "installer:disk");
    EXPECT_EQ(installerKey("D\xC4\xB1SK.dmg"), "installer:d\xC4\xB1sk");
}

} // namespace
} // namespace vesko
