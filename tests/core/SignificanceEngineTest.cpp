#include "core/SignificanceEngine.h"

#include "base/StringCatalog.h"
#include "core/GroupBuilders.h"
#include "support/builders.h"
#include <gmock/gmock.h>

namespace vesko {
namespace {

using ::testing::ElementsAre;
using testing::group;
using testing::ids;
using ::testing::IsEmpty;
using testing::item;
using testing::paths;

class FixedDate final : public DateSource {
public:
    Date now() const override { return dateFromUnixSeconds(1234567); }
};

ScanReport evaluate(std::vector<CleanupGroup> groups, std::vector<std::string> errors = {}) {
    return SignificanceEngine().evaluate(std::move(groups), std::move(errors), FixedDate());
}

TEST(SignificanceEngine, NoGroupsMakeAnEmptyReportWithTheErrors) {
    const ScanReport report = evaluate({}, {"one", "two"});
    const ScanReport expected{{}, 0, {"one", "two"}, dateFromUnixSeconds(1234567)};
    EXPECT_EQ(report, expected);
}

TEST(SignificanceEngine, DiscoveriesAloneAreAllKept) {
    const CleanupGroup outer = group("discover.caches", {item("/h/Library", 5)});
    const CleanupGroup inner = group("discover.appSupport", {item("/h/Library/x", 4)});
    EXPECT_EQ(removeCoveredDiscoveries({outer, inner}), (std::vector{outer, inner}));
    EXPECT_THAT(ids(evaluate({outer, inner}).groups), ElementsAre("discover.caches", "discover.appSupport"));
}

TEST(SignificanceEngine, ADiscoveryThatContainsAnotherGroupsItemGoes) {
    const ScanReport report = evaluate({group("discover.caches", {item("/h/Library/Caches/Tool", 50)}),
                                        group("cache.tool", {item("/h/Library/Caches/Tool/parts/a", 5)})});
    EXPECT_THAT(ids(report.groups), ElementsAre("cache.tool"));
    EXPECT_EQ(report.foundTotalBytes, 5);
}

TEST(SignificanceEngine, ADiscoveryInsideAnotherGroupsItemGoes) {
    const ScanReport report = evaluate({group("discover.caches", {item("/h/Library/Caches/Tool/deep", 50)}),
                                        group("fixed.tool", {item("/h/Library/Caches/Tool", 60)})});
    EXPECT_THAT(ids(report.groups), ElementsAre("fixed.tool"));
}

TEST(SignificanceEngine, ADiscoveryEqualToAnotherGroupsItemGoes) {
    const ScanReport report = evaluate({group("discover.caches", {item("/h/a/./b", 50), item("/h/keep", 2)}),
                                        group("fixed.tool", {item("/h/a/b", 60)})});
    ASSERT_THAT(ids(report.groups), ElementsAre("fixed.tool", "discover.caches"));
    EXPECT_THAT(paths(report.groups[1].items), ElementsAre("/h/keep"));
}

TEST(SignificanceEngine, TheSameLettersWithoutASlashAreNoCover) {
    const ScanReport report =
        evaluate({group("discover.caches", {item("/h/Tools", 50), item("/h/Too", 40), item("/h/tool", 30)}),
                  group("fixed.tool", {item("/h/Tool", 60)})});
    ASSERT_THAT(ids(report.groups), ElementsAre("discover.caches", "fixed.tool"));
    EXPECT_THAT(paths(report.groups[0].items), ElementsAre("/h/Tools", "/h/Too", "/h/tool"));
}

TEST(SignificanceEngine, ADiscoveryThatLosesItemsKeepsItsSubtitle) {
    const CleanupGroup before = group("discover.caches", {item("/h/a", 50), item("/h/b", 40)});
    const ScanReport report = evaluate({before, group("fixed.tool", {item("/h/a", 60)})});
    ASSERT_THAT(ids(report.groups), ElementsAre("fixed.tool", "discover.caches"));
    EXPECT_EQ(report.groups[1], withItems(before, ItemList{item("/h/b", 40)}));
    EXPECT_EQ(report.groups[1].subtitle, "subtitle of discover.caches");
    EXPECT_EQ(report.foundTotalBytes, 100);
}

TEST(SignificanceEngine, OneDiscoveryDoesNotCoverAnother) {
    const ScanReport report =
        evaluate({group("discover.caches", {item("/h/a", 5)}), group("discover.more", {item("/h/a", 4)}),
                  group("fixed.tool", {item("/elsewhere", 3)})});
    EXPECT_THAT(ids(report.groups), ElementsAre("discover.caches", "discover.more", "fixed.tool"));
}

TEST(SignificanceEngine, OfTwoProjectItemsWithOneURLTheLargerStays) {
    ScannableItem labelled = item("/p/a", 7);
    labelled.displayLabel = "the larger";
    const auto groups =
        consolidateProjectArtifacts({group("project.nodeModules", {item("/p/a", 5), item("/p/b", 6)}),
                                     group("project.nodeBuild", {labelled, item("/p/b", 2)})});
    ASSERT_THAT(ids(groups), ElementsAre("project.artifacts"));
    EXPECT_EQ(groups[0].items, (ItemList{labelled, item("/p/b", 6)}));
}

TEST(SignificanceEngine, OfTwoEqualProjectItemsWithOneURLTheFirstStays) {
    ScannableItem second = item("/p/a", 5);
    second.displayLabel = "second";
    const auto groups = consolidateProjectArtifacts(
        {group("project.pods", {item("/p/a", 5)}), group("project.next", {second})});
    EXPECT_EQ(groups[0].items, ItemList{item("/p/a", 5)});
}

TEST(SignificanceEngine, ASingleProjectGroupBecomesTheMergedOne) {
    const auto groups = consolidateProjectArtifacts({group("project.cargoTarget", {item("/p/target", 5)})});
    ASSERT_THAT(ids(groups), ElementsAre("project.artifacts"));
    CleanupGroup expected;
    expected.id = "project.artifacts";
    expected.title = probeTitle("project.artifacts");
    expected.icon = "shippingbox";
    expected.section = sections::development();
    expected.providerID = {"project"};
    expected.subtitle = localized("probe.subtitle.item", 1);
    expected.items = ItemList{item("/p/target", 5)};
    expected.baselineSafety = Safety::revisar;
    expected.baselineReason = probeReason("project.artifacts");
    EXPECT_EQ(groups[0], expected);
}

TEST(SignificanceEngine, AllEightKindsOfProjectAndTheMergedGroupItselfMergeBehindTheOthers) {
    std::vector<CleanupGroup> groups;
    int size = 0;
    for (const char* id :
         {"project.nodeModules", "project.pods", "project.cargoTarget", "project.gradleBuild", "project.next",
          "project.nodeDist", "project.nodeOut", "project.nodeBuild", "project.artifacts"})
        groups.push_back(group(id, {item(std::string("/p/") + id, ++size)}));
    groups.insert(groups.begin() + 3, group("cache.npm", {item("/c", 1)}));
    groups.push_back(group("project.somethingElse", {item("/s", 1)}));

    const auto merged = consolidateProjectArtifacts(groups);

    ASSERT_THAT(ids(merged), ElementsAre("cache.npm", "project.somethingElse", "project.artifacts"));
    EXPECT_EQ(merged[2].items.size(), 9U);
    EXPECT_EQ(merged[2].items.front().url.path(), "/p/project.artifacts");
}

TEST(SignificanceEngine, WithoutProjectItemsTheGroupsStayAsTheyAre) {
    const std::vector groups{group("project.pods"), group("cache.npm", {item("/c", 1)})};
    EXPECT_EQ(consolidateProjectArtifacts(groups), groups);
}

TEST(SignificanceEngine, AGroupWithoutItemsDoesNotReachTheReport) {
    const ScanReport report = evaluate({group("cache.empty"), group("cache.npm", {item("/c", 1)}),
                                        group("discover.empty"), group("project.pods")});
    EXPECT_THAT(ids(report.groups), ElementsAre("cache.npm"));
}

TEST(SignificanceEngine, GroupsOfEqualSizeKeepTheirOrder) {
    const ScanReport report =
        evaluate({group("b", {item("/b", 5)}), group("large", {item("/l", 9)}),
                  group("a", {item("/a/1", 2), item("/a/2", 3)}), group("c", {item("/c", 5)})});
    EXPECT_THAT(ids(report.groups), ElementsAre("large", "b", "a", "c"));
    EXPECT_EQ(report.foundTotalBytes, 24);
}

TEST(SignificanceEngine, TheMergedGroupIsSortedAmongTheOthers) {
    const ScanReport report =
        evaluate({group("project.pods", {item("/p", 50)}), group("a", {item("/a", 9)})});
    EXPECT_THAT(ids(report.groups), ElementsAre("project.artifacts", "a"));
}

TEST(SignificanceEngine, NothingIsTakenFromGroupsThatAreNoDiscoveries) {
    const std::vector groups{group("a", {item("/h", 9), item("/h/x", 3)}), group("b", {item("/h/x", 3)})};
    EXPECT_EQ(removeCoveredDiscoveries(groups), groups);
}

TEST(SignificanceEngineDeathTest, ATotalBeyond63BitsStopsTheProcess) {
    const std::vector groups{group("a", {item("/a", INT64_MAX)}), group("b", {item("/b", 1)})};
    EXPECT_DEATH(totalBytes(groups), "a sum of bytes does not fit 63 bits");
    EXPECT_DEATH(evaluate(groups), "a sum of bytes does not fit 63 bits");
}

TEST(SignificanceEngineDeathTest, AGroupBeyond63BitsStopsTheProcess) {
    EXPECT_DEATH(groupBytes(group("a", {item("/a", INT64_MAX), item("/b", 1)})),
                 "a sum of bytes does not fit 63 bits");
}

TEST(SignificanceEngine, ATotalOfAll63BitsIsStillASum) {
    const ScanReport report =
        evaluate({group("a", {item("/a", INT64_MAX - 3), item("/b", 1)}), group("b", {item("/c", 2)})});
    EXPECT_EQ(report.foundTotalBytes, INT64_MAX);
}

} // namespace
} // namespace vesko
