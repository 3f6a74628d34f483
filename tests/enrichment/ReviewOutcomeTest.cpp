#include "enrichment/ReviewOutcome.h"

#include "base/StringCatalog.h"
#include "core/GroupBuilders.h"
#include <gtest/gtest.h>

namespace vesko {
namespace {

ScannableItem item(std::string path, std::int64_t size) {
    ScannableItem made;
    made.url = FileURL(std::move(path));
    made.size = size;
    made.enrichmentKey = EnrichmentKey::forURL(made.url);
    return made;
}

GroupMetadata metadata(std::string id, Safety safety = Safety::seguro) {
    return {std::move(id), "box", sections::caches(), {"cache"}, RelevancePolicy::alwaysRelevant, "", safety};
}

CleanupGroup group(std::string id, std::vector<ScannableItem> items, Safety safety = Safety::revisar) {
    return makeGroup(metadata(std::move(id), safety), std::move(items));
}

std::vector<std::string> paths(const CleanupGroup& group) {
    std::vector<std::string> list;
    for (const ScannableItem& each : group.items) list.push_back(each.url.path());
    return list;
}

std::vector<std::string> ids(const std::vector<CleanupGroup>& groups) {
    std::vector<std::string> list;
    for (const CleanupGroup& each : groups) list.push_back(each.id);
    return list;
}

TEST(ReviewOutcome, AGroupThatLosesItsOnlyItemIsGone) {
    const auto outcome =
        applyPatches({group("discover.caches", {item("/x", 5)}), group("trash", {item("/t", 9)})},
                     {ReviewPatch::reclassify(item("/x", 5), "discover.caches", metadata("trash"))});
    ASSERT_EQ(ids(outcome.groups), std::vector<std::string>{"trash"});
    EXPECT_EQ(paths(outcome.groups[0]), (std::vector<std::string>{"/t", "/x"}));
    EXPECT_EQ(outcome.applied, 1);
    EXPECT_TRUE(outcome.discoveredURLs.empty());
    EXPECT_EQ(outcome.movedURLs, std::vector<FileURL>{FileURL("/x")});
}

TEST(ReviewOutcome, ADemotionChangesNothing) {
    const std::vector<CleanupGroup> before{group("discover.caches", {item("/x", 5)})};
    const auto outcome = applyPatches(before, {ReviewPatch::demote(FileURL("/x"))});
    EXPECT_EQ(outcome.groups, before);
    EXPECT_EQ(outcome.applied, 0);
    EXPECT_TRUE(outcome.movedURLs.empty());
}

TEST(ReviewOutcome, APromotionWithinItsGroupPutsTheNewItemInThePlaceOfTheOld) {
    ScannableItem old = item("/x", 5);
    old.enrichmentKey = EnrichmentKey::forBundle("x");
    const auto outcome = applyPatches({group("cache.yarn", {old, item("/y", 3)})},
                                      {ReviewPatch::promote(item("/x", 5), metadata("cache.yarn"))});
    ASSERT_EQ(outcome.groups.size(), 1u);
    EXPECT_EQ(paths(outcome.groups[0]), (std::vector<std::string>{"/y", "/x"}));
    EXPECT_EQ(outcome.groups[0].items[1].enrichmentKey.rawValue, "url:/x");
    EXPECT_EQ(outcome.discoveredURLs, std::vector<FileURL>{FileURL("/x")});
}

TEST(ReviewOutcome, AnItemLeavesEveryGroupHoweverItsPathIsWritten) {
    const auto outcome =
        applyPatches({group("discover.caches", {item("/a/./x", 5), item("/a/y", 4)}),
                      group("discover.appSupport", {item("/a//x", 5)}), group("other", {item("/b", 1)})},
                     {ReviewPatch::promote(item("/a/x", 5), metadata("cache.yarn"))});
    EXPECT_EQ(ids(outcome.groups), (std::vector<std::string>{"cache.yarn", "discover.caches", "other"}));
    EXPECT_EQ(paths(outcome.groups[1]), std::vector<std::string>{"/a/y"});
}

TEST(ReviewOutcome, AGroupThatIsThereTakesOnTheVerdictAndKeepsTheRest) {
    CleanupGroup there = group("cache.yarn", {item("/y", 1)}, Safety::risco);
    there.title = "Title";
    there.icon = "own";
    there.section = sections::apps();
    there.providerID = {"own"};
    there.relevancePolicy = RelevancePolicy::standard;
    const auto outcome =
        applyPatches({there}, {ReviewPatch::promote(item("/x", 500), metadata("cache.yarn"))});
    CleanupGroup expected = there;
    expected.baselineSafety = Safety::seguro;
    expected.baselineReason = probeReason("cache.yarn");
    expected.subtitle = "";
    expected.items = {item("/y", 1), item("/x", 500)};
    EXPECT_EQ(outcome.groups, std::vector<CleanupGroup>{expected});
    EXPECT_EQ(outcome.keysToReconsider, (std::unordered_set<EnrichmentKey>{{"url:/x"}}));
}

TEST(ReviewOutcome, AMissingGroupIsMadeOfItsMetadata) {
    const auto outcome =
        applyPatches({}, {ReviewPatch::promote(item("/x", 500), metadata("cache.yarn", Safety::revisar))});
    ASSERT_EQ(outcome.groups.size(), 1u);
    CleanupGroup expected;
    expected.id = "cache.yarn";
    expected.title = probeTitle("cache.yarn");
    expected.icon = "box";
    expected.section = sections::caches();
    expected.providerID = {"cache"};
    expected.relevancePolicy = RelevancePolicy::alwaysRelevant;
    expected.items = {item("/x", 500)};
    expected.baselineSafety = Safety::revisar;
    expected.baselineReason = probeReason("cache.yarn");
    EXPECT_EQ(outcome.groups[0], expected);
    EXPECT_TRUE(outcome.keysToReconsider.empty());
}

TEST(ReviewOutcome, TheLastOfSeveralMovesCounts) {
    const auto outcome = applyPatches(
        {group("discover.caches", {item("/x", 5)})},
        {ReviewPatch::promote(item("/x", 5), metadata("cache.yarn")),
         ReviewPatch::promote(item("/y", 1), metadata("cache.npm")),
         ReviewPatch::reclassify(item("/x", 5), "cache.yarn", metadata("trash", Safety::risco))});
    EXPECT_EQ(ids(outcome.groups), (std::vector<std::string>{"trash", "cache.npm"}));
    EXPECT_EQ(outcome.applied, 3);
    EXPECT_EQ(outcome.keysToReconsider, (std::unordered_set<EnrichmentKey>{{"url:/y"}}));
}

TEST(ReviewOutcome, UntouchedGroupsShareTheirItems) {
    const CleanupGroup other = group("other", {item("/b", 1)});
    const auto outcome = applyPatches({group("discover.caches", {item("/x", 5)}), other},
                                      {ReviewPatch::promote(item("/x", 5), metadata("cache.yarn"))});
    ASSERT_EQ(outcome.groups.size(), 2u);
    EXPECT_TRUE(outcome.groups[1].items.sharesMemory(other.items));
}

} // namespace
} // namespace vesko
