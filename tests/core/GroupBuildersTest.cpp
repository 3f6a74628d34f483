#include "core/GroupBuilders.h"

#include "base/FileSystem.h"
#include "base/StringCatalog.h"
#include "support/TempTree.h"
#include "support/builders.h"
#include <gmock/gmock.h>

namespace vesko {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using testing::TempTree;

class GroupBuilders : public ::testing::Test {
protected:
    void SetUp() override { setCurrentLanguage(Language::english); }
    void TearDown() override { setCurrentLanguage(Language::english); }
};

TEST_F(GroupBuilders, AKnownProbeHasItsTitleFromTheCatalog) {
    EXPECT_EQ(probeTitle("trash"), "Trash");
    setCurrentLanguage(Language::portuguese);
    EXPECT_EQ(probeTitle("trash"), "Lixeira");
}

TEST_F(GroupBuilders, ATitleWithoutATextIsTheLastPartOfTheIdWithBlanks) {
    EXPECT_EQ(probeTitle("cache.no_such.big_own_tool"), "big own tool");
    EXPECT_EQ(probeTitle("nothing_like_it"), "nothing like it");
    EXPECT_EQ(probeTitle("ends.in.dots.."), "dots");
}

TEST_F(GroupBuilders, AnIdWithoutAnyPartIsItsOwnTitle) {
    EXPECT_EQ(probeTitle(""), "");
    EXPECT_EQ(probeTitle("..."), "...");
}

TEST_F(GroupBuilders, AReasonWithoutATextIsTheGeneralAdvice) {
    EXPECT_EQ(probeReason("no.such.probe"), localized("reason.reviewDefault"));
    EXPECT_EQ(probeReason("trash"), localized("probe.trash.reason"));
    EXPECT_NE(probeReason("trash"), localized("reason.reviewDefault"));
}

TEST_F(GroupBuilders, EverySectionHasItsOwnTitle) {
    EXPECT_EQ(sectionTitle("system"), "System");
    EXPECT_EQ(sectionTitle("apps"), "Apps");
    EXPECT_EQ(sectionTitle("caches"), "Caches");
    EXPECT_EQ(sectionTitle("development"), "Development");
    EXPECT_EQ(sectionTitle("downloads"), "Downloads");
    EXPECT_EQ(sectionTitle("installers"), "Installers");
}

TEST_F(GroupBuilders, AnUnknownSectionReadsAsTheSystems) {
    EXPECT_EQ(sectionTitle("nonsense"), localized("section.system"));
    EXPECT_EQ(sectionTitle(""), localized("section.system"));
    EXPECT_EQ(sectionTitle("selectAll"), localized("section.system"));
}

TEST_F(GroupBuilders, TheCountTextFollowsTheKindOfGroup) {
    EXPECT_EQ(groupSubtitle("installers.forgotten", 2), localized("probe.subtitle.installer", 2));
    EXPECT_EQ(groupSubtitle("installerish", 2), localized("probe.subtitle.installer", 2));
    EXPECT_EQ(groupSubtitle("apps.unused", 1), localized("probe.subtitle.app", 1));
    EXPECT_EQ(groupSubtitle("apps.unused.more", 1), localized("probe.subtitle.item", 1));
    EXPECT_EQ(groupSubtitle("cache.npm", 3), localized("probe.subtitle.item", 3));
    EXPECT_NE(groupSubtitle("cache.npm", 3), groupSubtitle("installers.forgotten", 3));
}

TEST_F(GroupBuilders, AGroupTakesItsFieldsFromTheMetadata) {
    GroupMetadata about = testing::metadata("trash", "fixed");
    about.subtitle = "not used";
    about.relevancePolicy = RelevancePolicy::alwaysRelevant;
    about.baselineSafety = Safety::risco;

    const CleanupGroup made = makeGroup(about, {testing::item("/a", 5), testing::item("/b", 7)});

    CleanupGroup expected;
    expected.id = "trash";
    expected.title = localized("probe.trash.title");
    expected.icon = "shippingbox";
    expected.section = sections::caches();
    expected.providerID = {"fixed"};
    expected.relevancePolicy = RelevancePolicy::alwaysRelevant;
    expected.subtitle = localized("probe.subtitle.item", 2);
    expected.items = ItemList{testing::item("/b", 7), testing::item("/a", 5)};
    expected.baselineSafety = Safety::risco;
    expected.baselineReason = localized("probe.trash.reason");
    EXPECT_EQ(made, expected);
}

TEST_F(GroupBuilders, ItemsOfEqualSizeKeepTheirOrder) {
    const CleanupGroup made =
        makeGroup(testing::metadata("x"), {testing::item("/first", 5), testing::item("/large", 9),
                                           testing::item("/second", 5), testing::item("/third", 5)});
    EXPECT_THAT(testing::paths(made.items), ElementsAre("/large", "/first", "/second", "/third"));
}

TEST_F(GroupBuilders, AResultLeavesOutItemsWithoutASize) {
    const ProbeResult result =
        makeResult(testing::metadata("x"),
                   {testing::item("/none", 0), testing::item("/one", 1), testing::item("/less", -4)});
    ASSERT_TRUE(result.group);
    EXPECT_THAT(testing::paths(result.group->items), ElementsAre("/one"));
    EXPECT_EQ(result.group->subtitle, localized("probe.subtitle.item", 1));
    EXPECT_THAT(result.errors, IsEmpty());
}

TEST_F(GroupBuilders, AResultOfOnlyEmptyItemsKeepsItsErrorsAndHasNoGroup) {
    const ProbeResult result =
        makeResult(testing::metadata("x"), {testing::item("/none", 0)}, {"first", "second"});
    EXPECT_FALSE(result.group);
    EXPECT_THAT(result.errors, ElementsAre("first", "second"));
}

TEST_F(GroupBuilders, AGroupWithOtherItemsKeepsItsSubtitle) {
    const CleanupGroup before = testing::group("x", {testing::item("/a", 1), testing::item("/b", 1)});
    CleanupGroup expected = before;
    expected.items = ItemList{testing::item("/b", 1)};
    EXPECT_EQ(withItems(before, ItemList{testing::item("/b", 1)}), expected);
    EXPECT_EQ(withItems(before, ItemList{testing::item("/b", 1)}).subtitle, before.subtitle);
}

TEST_F(GroupBuilders, OnlyDiscoveryGroupsOfferCandidates) {
    EXPECT_THAT(reviewCandidates(testing::group("cache.npm", {testing::item("/a", 1)})), IsEmpty());
    EXPECT_THAT(reviewCandidates(testing::group("discover", {testing::item("/a", 1)})), IsEmpty());
    EXPECT_THAT(reviewCandidates(testing::group("discover.caches")), IsEmpty());
}

TEST_F(GroupBuilders, ACandidateCarriesItsItemAndTheDateOfTheFile) {
    const TempTree tree;
    const FileURL file = tree.file("folder/thing");
    const auto candidates =
        reviewCandidates(testing::group("discover.caches", {testing::item(file.path(), 12, false)}));
    ASSERT_THAT(candidates, SizeIs(1));
    const ScanReviewCandidate expected{file, 12, "thing", false, contentModificationDate(file)};
    EXPECT_EQ(candidates.front(), expected);
    EXPECT_TRUE(candidates.front().modificationDate);
}

TEST_F(GroupBuilders, AnItemThatVanishedIsStillACandidateWithoutADate) {
    const TempTree tree;
    const auto candidates =
        reviewCandidates(testing::group("discover.caches", {testing::item(tree.path("gone"), 12)}));
    ASSERT_THAT(candidates, SizeIs(1));
    EXPECT_EQ(candidates.front().url, tree.url("gone"));
    EXPECT_FALSE(candidates.front().modificationDate);
}

TEST(Records, SafetyIsWrittenByItsWord) {
    EXPECT_EQ(safetyWord(Safety::seguro), "seguro");
    EXPECT_EQ(safetyWord(Safety::revisar), "revisar");
    EXPECT_EQ(safetyWord(Safety::risco), "risco");
    EXPECT_EQ(safetyFromWord("risco"), Safety::risco);
    EXPECT_FALSE(safetyFromWord("Risco"));
    EXPECT_FALSE(safetyFromWord(""));
}

TEST(Records, SectionsDifferWhenAnyFieldDoes) {
    const CleanupSection section = sections::apps();
    EXPECT_EQ(section, (CleanupSection{"apps", "Apps", 1}));
    EXPECT_NE(section, (CleanupSection{"apps", "Apps", 2}));
    EXPECT_NE(section, (CleanupSection{"apps", "apps", 1}));
    EXPECT_EQ(std::hash<CleanupSection>()(section), std::hash<CleanupSection>()({"apps", "Apps", 1}));
}

TEST(Records, TheBytesOfAGroupAreThoseOfItsItems) {
    EXPECT_EQ(groupBytes(testing::group("x")), 0);
    EXPECT_EQ(groupBytes(testing::group("x", {testing::item("/a", 40), testing::item("/b", 2)})), 42);
}

TEST(RecordsDeathTest, ASumBeyond63BitsStopsTheProcess) {
    const CleanupGroup group = testing::group("x", {testing::item("/a", INT64_MAX), testing::item("/b", 1)});
    EXPECT_DEATH(groupBytes(group), "a sum of bytes does not fit 63 bits");
}

} // namespace
} // namespace vesko
