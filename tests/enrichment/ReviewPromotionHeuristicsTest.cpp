#include "enrichment/ReviewPromotionHeuristics.h"

#include "core/ProbeCatalog.h"
#include "support/ScopedEnvironment.h"
#include <gtest/gtest.h>

namespace vesko {
namespace {

using ReviewPromotionHeuristics::matchGroupID;
using ReviewPromotionHeuristics::promote;

PendingReviewItem pending(const std::string& path, std::optional<std::string> groupID = std::nullopt) {
    const FileURL url(path);
    return {"0", url, 500, std::string(url.lastPathComponent()), true, url.path(), std::move(groupID)};
}

ScannableItem moved(const std::string& path) {
    ScannableItem item;
    item.url = FileURL(path);
    item.size = 500;
    item.isDirectory = true;
    item.enrichmentKey = EnrichmentKey{"url:" + path};
    return item;
}

const GroupMetadata& catalog(std::string_view id) { return probeMetadataByID().find(id)->second; }

TEST(ReviewPromotionHeuristics, LogsAndTheTrashAreKnown) {
    EXPECT_EQ(matchGroupID("/Users/a/Library/Logs/x"), "logs.stale");
    EXPECT_EQ(matchGroupID("/Users/a/.Trash/x"), "trash");
}

TEST(ReviewPromotionHeuristics, TheCaseOfLettersDoesNotMatter) {
    EXPECT_EQ(matchGroupID("/Users/a/LIBRARY/CACHES/HOMEBREW/y"), "cache.homebrew");
}

TEST(ReviewPromotionHeuristics, APrefixOfItsOwnIsFoundToo) {
    EXPECT_EQ(matchGroupID("/usr/local/var/homebrew/cache/y"), "cache.homebrew");
    EXPECT_EQ(matchGroupID("/opt/var/homebrew/caches"), "cache.homebrew");
}

TEST(ReviewPromotionHeuristics, TheFirstRowDecides) {
    EXPECT_EQ(matchGroupID("/Users/a/Library/Logs/.npm/x"), "logs.stale");
    EXPECT_EQ(matchGroupID("/Users/a/.Trash/Library/Logs/x"), "logs.stale");
    EXPECT_EQ(matchGroupID("/Users/a/.Trash/.npm/x"), "trash");
}

TEST(ReviewPromotionHeuristics, AllOfAToolsOwnFolderIsItsCache) {
    EXPECT_EQ(matchGroupID("/Users/a/.npm/_logs"), "cache.npm");
    EXPECT_EQ(matchGroupID("/Users/a/.npm/_cacache"), "cache.npm");
}

TEST(ReviewPromotionHeuristics, EachPieceOfTheTableLeadsToItsGroup) {
    const std::vector<std::pair<std::string, std::string_view>> places{
        {"/u/Library/Caches/org.swift.swiftpm", "cache.swiftpm"},
        {"/u/Library/Caches/JetBrains", "cache.jetbrains"},
        {"/u/Library/Caches/CocoaPods", "cache.cocoapods"},
        {"/u/.m2/repository", "cache.maven"},
        {"/u/Library/pnpm/store", "cache.pnpm"},
        {"/u/x.pnpm-store", "cache.pnpm"},
        {"/u/Library/Caches/Yarn", "cache.yarn"},
        {"/u/Library/Caches/pip", "cache.pip"},
        {"/u/.cache/pypoetry", "cache.poetry"},
        {"/u/Library/Caches/pypoetry", "cache.poetry"},
        {"/u/.gradle/caches", "cache.gradle"},
        {"/u/.cargo/registry", "cache.cargo"},
        {"/u/.cargo/git", "cache.cargo"},
        {"/u/Library/Caches/go-build", "cache.go"},
        {"/u/go/pkg/mod", "cache.go"},
        {"/u/.cache/uv", "cache.uv"},
        {"/u/.local/share/uv/cache", "cache.uv"},
        {"/u/.bun/install/cache", "cache.bun"},
        {"/u/.nuget/packages", "cache.nuget"},
    };
    for (const auto& [path, groupID] : places) {
        EXPECT_EQ(matchGroupID(path), groupID) << path;
        EXPECT_TRUE(probeMetadataByID().contains(groupID)) << groupID;
    }
}

TEST(ReviewPromotionHeuristics, APathIsCleanedBeforeItIsCompared) {
    const testing::ScopedEnvironment home("HOME", "/home/a/.Trash/b");
    EXPECT_EQ(matchGroupID("/u/./Library//Logs/x"), "logs.stale");
    EXPECT_EQ(matchGroupID("/u/.Trash/../x"), std::nullopt);
    EXPECT_EQ(matchGroupID("~/x"), "trash");
}

TEST(ReviewPromotionHeuristics, OtherPlacesAreUnknown) {
    for (const std::string_view path :
         {"", "/", "/u/Library/Logs", "/u/.Trash", "/u/Library/Caches/Home", "/u/.cargo", "/u/npm/x"})
        EXPECT_EQ(matchGroupID(path), std::nullopt) << path;
}

TEST(ReviewPromotionHeuristics, AnItemInNoGroupIsPromoted) {
    EXPECT_EQ(promote({pending("/u/.Trash/x")}).patches,
              std::vector{ReviewPatch::promote(moved("/u/.Trash/x"), catalog("trash"))});
}

TEST(ReviewPromotionHeuristics, AnItemOfAnotherGroupIsReclassified) {
    EXPECT_EQ(
        promote({pending("/u/.Trash/x", "discover.caches")}).patches,
        std::vector{ReviewPatch::reclassify(moved("/u/.Trash/x"), "discover.caches", catalog("trash"))});
}

TEST(ReviewPromotionHeuristics, AnItemOfTheSameGroupIsPromoted) {
    EXPECT_EQ(promote({pending("/u/.Trash/x", "trash")}).patches,
              std::vector{ReviewPatch::promote(moved("/u/.Trash/x"), catalog("trash"))});
}

TEST(ReviewPromotionHeuristics, BothListsKeepTheOrder) {
    const auto made = promote(
        {pending("/u/one"), pending("/u/.Trash/two"), pending("/u/three"), pending("/u/Library/Logs/four")});
    EXPECT_EQ(made.unplaced, (std::vector{pending("/u/one"), pending("/u/three")}));
    EXPECT_EQ(made.patches,
              (std::vector{ReviewPatch::promote(moved("/u/.Trash/two"), catalog("trash")),
                           ReviewPatch::promote(moved("/u/Library/Logs/four"), catalog("logs.stale"))}));
    EXPECT_TRUE(promote({}).patches.empty());
}

TEST(ReviewPromotionHeuristics, ABrokenNameIsNoObstacle) {
    EXPECT_EQ(matchGroupID("/u/Library/LOGS/\xff\xfe\nx"), "logs.stale");
    EXPECT_EQ(matchGroupID("/u/\xff/Library/Caches/Ünd\xc3/.NPM/x"), "cache.npm");
}

} // namespace
} // namespace vesko
