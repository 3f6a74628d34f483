#include "orchestration/ConsultantBreakdown.h"

#include "orchestration/CleanupFixture.h"

namespace vesko::testing {
namespace {

const ConsultantCategorySummary* summaryOf(const ConsultantBreakdown& breakdown, std::string_view id) {
    for (const ConsultantCategorySummary& summary : breakdown.categories)
        if (summary.category.id == id) return &summary;
    return nullptr;
}

TEST(ConsultantBreakdown, WithoutGroupsAllStaysUnexplained) {
    EXPECT_EQ(makeConsultantBreakdown({}, 500), (ConsultantBreakdown{{}, 500, 0, 500}));
}

TEST(ConsultantBreakdown, AFolderAroundWhatWasCountedIsPassedOver) {
    const auto breakdown = makeConsultantBreakdown(
        {group("trash", {item("/h/a", 100)}), group("logs.stale", {item("/h/a/b", 30), item("/h/ab", 7)})},
        1000);
    const auto* system = summaryOf(breakdown, "system");
    ASSERT_NE(system, nullptr);
    // The logs come first in the table's row.
    EXPECT_EQ(system->totalBytes, 37);
    EXPECT_EQ(system->itemCount, 2);
    EXPECT_EQ(idsOf(system->groups), (std::vector<std::string>{"logs.stale", "trash"}));
    EXPECT_EQ(breakdown.explainedBytes, 37);
    EXPECT_EQ(breakdown.unexplainedBytes, 963);
}

TEST(ConsultantBreakdown, WhatLiesInsideIsPassedOverToo) {
    const auto breakdown = makeConsultantBreakdown(
        {group("logs.stale", {item("/h/a", 100)}), group("trash", {item("/h/./a//b", 30)})}, 1000);
    EXPECT_EQ(breakdown.explainedBytes, 100);
}

TEST(ConsultantBreakdown, NothingIsUnexplainedWhenMoreIsExplainedThanUsed) {
    const auto breakdown = makeConsultantBreakdown({group("trash", {item("/t", 100)})}, 60);
    EXPECT_EQ(breakdown.unexplainedBytes, 0);
    EXPECT_EQ(breakdown.explainedBytes, 100);
    EXPECT_EQ(breakdown.totalUsedBytes, 60);
}

TEST(ConsultantBreakdown, ARowWithoutBytesLeavesNoSummaryButItsPathsCount) {
    const auto breakdown = makeConsultantBreakdown(
        {group("cache.npm", {item("/h/x", 0)}), group("trash", {item("/h/x/y", 100), item("/t", 1)})}, 1000);
    EXPECT_EQ(summaryOf(breakdown, "caches"), nullptr);
    ASSERT_NE(summaryOf(breakdown, "system"), nullptr);
    EXPECT_EQ(summaryOf(breakdown, "system")->totalBytes, 1);
}

TEST(ConsultantBreakdown, TheLargestStandsFirstAndEqualOnesInTheTablesOrder) {
    const auto breakdown = makeConsultantBreakdown(
        {group("backup.ios", {item("/b", 50)}), group("trash", {item("/t", 50)}),
         group("apps.unused", {item("/a", 70)}), group("cache.npm", {item("/n", 50)})},
        1000);
    std::vector<std::string> ids;
    for (const ConsultantCategorySummary& summary : breakdown.categories) ids.push_back(summary.category.id);
    EXPECT_EQ(ids, (std::vector<std::string>{"apps", "caches", "system", "backups"}));
}

TEST(ConsultantBreakdown, ProjectArtifactsCountForTheirFirstRowAlone) {
    const auto breakdown = makeConsultantBreakdown({group("project.artifacts", {item("/p", 50)})}, 1000);
    EXPECT_NE(summaryOf(breakdown, "nodejs"), nullptr);
    EXPECT_EQ(summaryOf(breakdown, "swift-apple"), nullptr);
}

TEST(ConsultantBreakdown, TheSafetyIsThatOfTheGroupsThatCounted) {
    const auto breakdown = makeConsultantBreakdown({group("logs.stale", {item("/l", 5)}, Safety::revisar),
                                                    group("trash", {item("/l/inside", 5)}, Safety::risco)},
                                                   1000);
    EXPECT_EQ(summaryOf(breakdown, "system")->aggregatedSafety, Safety::revisar);
}

TEST(ConsultantBreakdown, GroupsOfOneIdAreMergedWithTheLargerOfEachItem) {
    CleanupGroup first = group("trash", {item("/a", 5), item("/b", 9)});
    first.title = "kept";
    const auto breakdown =
        makeConsultantBreakdown({first, group("trash", {item("/a", 7), item("/b", 2), item("/c", 1)})}, 1000);
    ASSERT_EQ(breakdown.categories.size(), 1u);
    EXPECT_EQ(breakdown.categories[0].totalBytes, 17);
    EXPECT_EQ(breakdown.categories[0].itemCount, 3);
    ASSERT_EQ(breakdown.categories[0].groups.size(), 1u);
    EXPECT_EQ(breakdown.categories[0].groups[0].title, "kept");
    EXPECT_EQ(breakdown.categories[0].groups[0].items.size(), 3u);
}

TEST(ConsultantBreakdownDeathTest, SumsBeyond63BitsStopTheProcess) {
    EXPECT_DEATH(makeConsultantBreakdown({group("cache.npm", {item("/a", INT64_MAX), item("/b", 1)})}, 5),
                 "a sum of bytes does not fit 63 bits");
    EXPECT_DEATH(makeConsultantBreakdown(
                     {group("cache.npm", {item("/a", INT64_MAX)}), group("trash", {item("/b", 1)})}, 5),
                 "a sum of bytes does not fit 63 bits");
}

} // namespace
} // namespace vesko::testing
