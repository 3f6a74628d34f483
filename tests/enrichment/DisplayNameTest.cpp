#include "enrichment/DisplayName.h"
#include "support/LanguageScope.h"
#include <gtest/gtest.h>

namespace vesko {
namespace {

using testing::LanguageScope;

ScannableItem itemAt(const std::string& path) {
    ScannableItem item;
    item.url = FileURL(path);
    item.size = 1;
    return item;
}

std::string nameOf(const std::string& path, std::optional<std::string> enriched = std::nullopt) {
    return displayName(itemAt(path), enriched);
}

TEST(DisplayName, AGenericFolderIsNamedWithTheFolderAbove) {
    EXPECT_EQ(nameOf("/Users/a/shop/node_modules"), "node_modules — shop");
    for (const char* name : {"node_modules", "Pods", "target", "build", ".next", "dist", "out"})
        EXPECT_EQ(friendlyName(name, FileURL("/Users/a/shop")), std::string(name) + " — shop");
}

TEST(DisplayName, OnlyTheExactSpellingIsGeneric) {
    EXPECT_EQ(nameOf("/a/shop/Build"), "Build");
    EXPECT_EQ(nameOf("/a/shop/pods"), "pods");
    EXPECT_EQ(nameOf("/a/shop/outer"), "outer");
}

TEST(DisplayName, AProjectNamedByAMachineIsCalledUnidentified) {
    const std::string path = "/Users/a/123E4567-e89b-12d3-a456-426614174000/build";
    {
        const LanguageScope english(Language::english);
        EXPECT_EQ(nameOf(path), "build — " + catalogText("display.unidentifiedProject", Language::english));
    }
    const LanguageScope portuguese(Language::portuguese);
    EXPECT_EQ(nameOf(path), "build — " + catalogText("display.unidentifiedProject", Language::portuguese));
    EXPECT_NE(catalogText("display.unidentifiedProject", Language::portuguese),
              catalogText("display.unidentifiedProject", Language::english));
}

TEST(DisplayName, AGenericFolderInOneOfItsOwnNameStaysAlone) {
    EXPECT_EQ(nameOf("/a/build/build"), "build");
    EXPECT_EQ(nameOf("/a/build/dist"), "dist — build");
}

TEST(DisplayName, AGenericFolderAtTheRootIsNamedWithTheRoot) { EXPECT_EQ(nameOf("/Pods"), "Pods — /"); }

TEST(DisplayName, AGenericFolderWithNothingAboveItStaysAlone) { EXPECT_EQ(nameOf("build"), "build"); }

TEST(DisplayName, ALabelBeatsEverything) {
    ScannableItem item = itemAt("/a/shop/node_modules");
    item.displayLabel = "Label";
    EXPECT_EQ(displayName(item, "Model's name — shop"), "Label");
    item.displayLabel = "";
    EXPECT_EQ(displayName(item, std::nullopt), "node_modules — shop");
}

TEST(DisplayName, AnEnrichedNameStandsForWhatIsNotGeneric) {
    EXPECT_EQ(nameOf("/a/com.example.tool", "The tool"), "The tool");
    EXPECT_EQ(nameOf("/a/com.example.tool", ""), "Tool");
    EXPECT_EQ(nameOf("/a/com.example.tool"), "Tool");
}

TEST(DisplayName, AnEnrichedNameThatLostTheProjectGivesWay) {
    EXPECT_EQ(nameOf("/a/shop/node_modules", "Dependencies"), "node_modules — shop");
    EXPECT_EQ(nameOf("/a/shop/node_modules", ""), "node_modules — shop");
}

TEST(DisplayName, AnEnrichedNameThatKeepsTheProjectStands) {
    EXPECT_EQ(nameOf("/a/shop/node_modules", "Dependencies of shop"), "Dependencies of shop");
    EXPECT_EQ(nameOf("/a/shop/node_modules", "Dependencies of SHOPs"), "Dependencies of SHOPs");
    EXPECT_EQ(nameOf("/a/Loja Ação/build", "loja AÇÃO, construção"), "loja AÇÃO, construção");
    EXPECT_EQ(nameOf("/a/Loja Ação/build", "loja acao"), "build — Loja Ação");
}

TEST(DisplayName, AnEnrichedNameWithADashOrASlashStands) {
    EXPECT_EQ(nameOf("/a/shop/node_modules", "Dependencies — x"), "Dependencies — x");
    EXPECT_EQ(nameOf("/a/shop/node_modules", "x / Dependencies"), "x / Dependencies");
    EXPECT_EQ(nameOf("/a/shop/node_modules", "x/Dependencies"), "node_modules — shop");
    EXPECT_EQ(nameOf("/a/shop/node_modules", "x - Dependencies"), "node_modules — shop");
}

TEST(DisplayName, WhatCannotBeShownIsEscaped) {
    EXPECT_EQ(nameOf("/a/caf\xE9\nx"), "caf\\xE9\\x0Ax");
    EXPECT_EQ(nameOf("/a/\xFF\xFE/build"), "build — \\xFF\\xFE");
}

TEST(CleanName, BlanksAndTabsAroundGoAndLineEndsStay) {
    EXPECT_EQ(cleanName(" \tname\t "), "name");
    EXPECT_EQ(cleanName("name\n"), "name\n");
}

TEST(CleanName, ANameOfNothingStaysAsItIs) {
    EXPECT_EQ(cleanName(""), "");
    EXPECT_EQ(cleanName(" \t "), " \t ");
}

TEST(CleanName, AnIdentifierGivesItsLastPart) {
    EXPECT_EQ(cleanName("com.example.tool"), "Tool");
    EXPECT_EQ(cleanName("com.example.sub.toolKit"), "ToolKit");
    EXPECT_EQ(cleanName("br.com.ação"), "Ação");
    EXPECT_EQ(cleanName(" com.example.tool "), "Tool");
}

TEST(CleanName, WhatOnlyResemblesAnIdentifierStays) {
    EXPECT_EQ(cleanName("com.apple"), "com.apple");
    EXPECT_EQ(cleanName("com..apple"), "com..apple");
    EXPECT_EQ(cleanName(".com.apple"), ".com.apple");
    EXPECT_EQ(cleanName("com.apple."), "com.apple.");
    EXPECT_EQ(cleanName("a name.with.many.dots"), "a name.with.many.dots");
}

TEST(CleanName, AnImageLosesItsExtensionInAnyCase) {
    EXPECT_EQ(cleanName("Installer.DMG"), "Installer");
    EXPECT_EQ(cleanName("Tool_Setup-1.4.2-arm64.dmg"), "Tool Setup");
    EXPECT_EQ(cleanName("Tool.Dmg"), "Tool");
    EXPECT_EQ(cleanName("Tool.dmg.zip"), "Zip");
}

TEST(CleanName, AnImageNamedByAVersionKeepsIt) { EXPECT_EQ(cleanName("1.2.3.dmg"), "1.2.3"); }

TEST(CleanName, AnImageWithoutWordsKeepsWhatIsThere) {
    EXPECT_EQ(cleanName(".dmg"), "");
    EXPECT_EQ(cleanName("-_.dmg"), "-_");
}

TEST(CleanInstallerName, WordsBeforeTheVersionStay) {
    EXPECT_EQ(cleanInstallerName("Tool_Setup-1.4.2-arm64"), "Tool Setup");
    EXPECT_EQ(cleanInstallerName("Tool  Pro v3"), "Tool Pro");
    EXPECT_EQ(cleanInstallerName("Tool-V2.0-beta"), "Tool");
    EXPECT_EQ(cleanInstallerName("Tool-arm64"), "Tool arm64");
    EXPECT_EQ(cleanInstallerName("Tool vvv v2x 1-3"), "Tool vvv v2x");
    EXPECT_EQ(cleanInstallerName("Tool v 1"), "Tool v");
    EXPECT_EQ(cleanInstallerName("Tool .5"), "Tool .5");
}

TEST(CleanInstallerName, ALeadingVersionIsKept) {
    EXPECT_EQ(cleanInstallerName("v2.0-beta"), "v2.0");
    EXPECT_EQ(cleanInstallerName("--2024"), "2024");
}

TEST(CleanInstallerName, NothingGivesNothing) {
    EXPECT_EQ(cleanInstallerName(""), "");
    EXPECT_EQ(cleanInstallerName("-_ "), "");
}

TEST(CleanInstallerName, EveryNumberCharacterMakesAVersion) {
    EXPECT_EQ(cleanInstallerName("Tool ٣.١ x"), "Tool");
    EXPECT_EQ(cleanInstallerName("Tool Ⅳ x"), "Tool");
    EXPECT_EQ(cleanInstallerName("Tool ½ x"), "Tool");
}

TEST(LooksOpaque, AUuidIsOpaqueInEitherCase) {
    EXPECT_TRUE(looksOpaque("123e4567-e89b-12d3-a456-426614174000"));
    EXPECT_TRUE(looksOpaque("123E4567-E89B-12D3-A456-426614174000"));
    EXPECT_FALSE(looksOpaque("ghij4567-ghij-ghij-ghij-gggg14174000"));
}

TEST(LooksOpaque, TwentyOneHexadecimalDigitsOfTwentyFourAreOpaque) {
    EXPECT_TRUE(looksOpaque(std::string(21, 'a') + "xyz"));
    EXPECT_TRUE(looksOpaque(std::string(21, 'F') + "ção"));
}

TEST(LooksOpaque, TwentyOfTwentyFourAreNotUnlessThereIsAnAt) {
    EXPECT_FALSE(looksOpaque(std::string(20, '0') + "wxyz"));
    EXPECT_TRUE(looksOpaque(std::string(20, '0') + "@xyz"));
    EXPECT_TRUE(looksOpaque(std::string(20, '0') + "@ and much that is no digit at all"));
    EXPECT_FALSE(looksOpaque(std::string(19, '0') + "@wxyz"));
}

TEST(LooksOpaque, TwentyThreeHexadecimalDigitsAreNot) {
    EXPECT_FALSE(looksOpaque(std::string(23, 'c')));
    EXPECT_TRUE(looksOpaque(std::string(24, 'c')));
}

TEST(LooksOpaque, CharactersArePerceivedOnes) {
    // 21 digits and three flags are 24 characters; 21 digits and one family are 22.
    EXPECT_TRUE(looksOpaque(std::string(21, 'a') + "🇧🇷🇵🇹🇦🇴"));
    EXPECT_FALSE(looksOpaque(std::string(21, 'a') + "👩‍👩‍👧‍👧"));
    // A decomposed accent makes its letter another character, which is no digit.
    EXPECT_FALSE(looksOpaque(std::string(20, '0') + "e\u0301" + "xyz"));
    EXPECT_TRUE(looksOpaque(std::string(21, '0') + "e\u0301" + "xy"));
}

TEST(LooksOpaque, OrdinaryNamesAreNot) {
    for (const char* name : {"", "shop", "a", "deadbeef", "my-project@2.0", "123456789"})
        EXPECT_FALSE(looksOpaque(name)) << name;
}

TEST(CacheLocationHint, EveryKnownPlaceHasItsWords) {
    EXPECT_EQ(cacheLocationHint(FileURL("/Users/a/Library/pnpm/store")), "Library/pnpm");
    EXPECT_EQ(cacheLocationHint(FileURL("/Users/a/.pnpm-store")), "~/.pnpm-store");
    EXPECT_EQ(cacheLocationHint(FileURL("/Users/a/.npm/_cacache")), "~/.npm");
    EXPECT_EQ(cacheLocationHint(FileURL("/Users/a/Library/Caches/Yarn")), "Library/Caches/Yarn");
    EXPECT_EQ(cacheLocationHint(FileURL("/Users/a/.cargo/registry")), "~/.cargo/registry");
    EXPECT_EQ(cacheLocationHint(FileURL("/Users/a/.gradle/caches")), "~/.gradle/caches");
}

TEST(CacheLocationHint, TheFirstPlaceInTheListDecides) {
    EXPECT_EQ(cacheLocationHint(FileURL("/a/.npm/Library/pnpm/x")), "Library/pnpm");
    EXPECT_EQ(cacheLocationHint(FileURL("/a/Library/Caches/.npm/x")), "~/.npm");
    EXPECT_EQ(cacheLocationHint(FileURL("/a/.gradle/Library/Caches/x")), "Library/Caches/x");
}

TEST(CacheLocationHint, AnyOtherPlaceHasNone) {
    EXPECT_EQ(cacheLocationHint(FileURL("/Users/a/.npm")), std::nullopt);
    EXPECT_EQ(cacheLocationHint(FileURL("/Users/a/library/caches/x")), std::nullopt);
    EXPECT_EQ(cacheLocationHint(FileURL("/Users/a/.cache/x")), std::nullopt);
    EXPECT_EQ(cacheLocationHint(FileURL()), std::nullopt);
}

} // namespace
} // namespace vesko
