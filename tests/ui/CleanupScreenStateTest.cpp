#include "ui/CleanupScreenState.h"
#include "base/ByteFormat.h"
#include "base/StringCatalog.h"
#include "ui/ScreenStage.h"
#include <gtest/gtest.h>

namespace vesko {
namespace {

using namespace testing;
using Content = CleanupScreenState::Content;
using Banner = CleanupScreenState::Banner;
using Chip = CleanupScreenState::Chip;

class ScreenState : public ::testing::Test {
protected:
    CleanupScreenState now() const { return describe(*stage.model); }

    ScreenStage stage;
    CleanupViewModel& model = *stage.model;
    const std::vector<CleanupGroup> groups{
        group("cache.npm", {item("/n", 9'000'000)}),
        group("trash", {item("/t/1", 4'000'000), item("/t/2", 2'000'000)}),
    };
};

// Content.

TEST_F(ScreenState, BeforeAnyScanItAwaitsOne) { EXPECT_EQ(now().content, Content::awaitingScan); }

TEST_F(ScreenState, AScanWithoutGroupsShowsASkeleton) {
    model.phase = CleanupPhase::scanning();
    EXPECT_EQ(now().content, Content::skeleton);
}

TEST_F(ScreenState, ACancelledFirstScanShowsWhatItFoundWithItsBanner) {
    model.groups = groups;
    model.scanWasPartial = true;
    ASSERT_FALSE(model.lastScanDate->has_value());
    EXPECT_EQ(now().content, Content::list);
    EXPECT_TRUE(now().wasPartial);
}

TEST_F(ScreenState, ASearchWithoutHitsShowsNoResultsAndTheHeroIsGone) {
    showGroups(model, groups);
    ASSERT_FALSE(now().heroFacts.empty());
    model.searchText = std::string("zzzz");
    EXPECT_EQ(now().content, Content::noResults);
    EXPECT_TRUE(now().heroFacts.empty());
    EXPECT_TRUE(now().segments.empty());
}

TEST_F(ScreenState, AScanThatFoundNothingShowsNoResults) {
    showGroups(model, {});
    EXPECT_EQ(now().content, Content::noResults);
}

TEST_F(ScreenState, ASearchWithoutHitsDuringAScanKeepsTheList) {
    showGroups(model, groups);
    model.searchText = std::string("zzzz");
    model.phase = CleanupPhase::scanning();
    EXPECT_EQ(now().content, Content::list);
}

TEST_F(ScreenState, AfterDeletingEverythingTheMessageStandsAboveTheEmptyState) {
    showGroups(model, {});
    model.cleanupMessage = std::optional<std::string>("done");
    EXPECT_EQ(now().content, Content::noResults);
    EXPECT_EQ(now().cleanupMessage, "done");
}

// Scan banner.

TEST_F(ScreenState, AScanWithoutProgressIsPreparing) {
    model.phase = CleanupPhase::scanning();
    EXPECT_EQ(now().banner, Banner::preparing);
    EXPECT_EQ(now().scanLine, localized("banner.scanPreparing"));
}

TEST_F(ScreenState, AScanWithProgressTellsItsFigures) {
    model.phase = CleanupPhase::scanning();
    model.scanProgress = std::optional(ScanProgress{"npm", 7, 31'500'000'000, 1284, 0.42});
    EXPECT_EQ(now().banner, Banner::progress);
    EXPECT_EQ(now().scanLine,
              localized("banner.scanProgress %1$lld %2$@ %3$lld", 7, formatBytes(31'500'000'000), 1284));
    EXPECT_DOUBLE_EQ(now().scanFraction, 0.42);
}

TEST_F(ScreenState, WithoutAScanThereIsNoBannerWhateverTheProgress) {
    model.scanProgress = std::optional(ScanProgress{"npm", 7, 1, 1, 0.42});
    EXPECT_EQ(now().banner, Banner::none);
}

// Hero.

TEST_F(ScreenState, TheFactsStandInOrderAndOnlyThoseThatApply) {
    showGroups(model, groups);
    EXPECT_EQ(now().heroFacts, localized("hero.indexed %@", formatBytes(15'000'000)) + " · " +
                                   localized("hero.candidates %@", formatBytes(15'000'000)) + " · " +
                                   localized("hero.selected %@", formatBytes(9'000'000)));
    model.indexedBytes = std::int64_t{0};
    model.searchText = std::string("npm");
    EXPECT_EQ(now().heroFacts, localized("hero.candidates %@", formatBytes(15'000'000)) + " · " +
                                   localized("hero.visible %@", formatBytes(9'000'000)) + " · " +
                                   localized("hero.selected %@", formatBytes(9'000'000)));
}

TEST_F(ScreenState, TheChipOfTheReviewWinsOverThatOfTheVerdicts) {
    showGroups(model, groups);
    EXPECT_EQ(now().chip, Chip::none);
    model.analyzingKeys =
        std::unordered_set{EnrichmentKey::forURL(FileURL("/t/1")), EnrichmentKey::forURL(FileURL("/t/2"))};
    EXPECT_EQ(now().chip, Chip::refining);
    EXPECT_EQ(now().chipText, localized("chip.aiRefining %lld", 1));
    model.isReviewing = true;
    EXPECT_EQ(now().chip, Chip::reviewing);
    EXPECT_EQ(now().chipText, localized("chip.aiReviewing"));
}

// Status.

TEST_F(ScreenState, AFailedDeletionTellsItsTextsAndItsSummary) {
    showGroups(model, groups);
    model.phase = CleanupPhase::error("a: no\nb: no");
    model.cleanupMessage = std::optional<std::string>("partly");
    EXPECT_TRUE(now().hasFailed);
    EXPECT_EQ(now().failureText, "a: no\nb: no");
    EXPECT_EQ(now().cleanupMessage, "partly");
}

TEST_F(ScreenState, TheReviewsMessageStaysUntilItIsDismissed) {
    showGroups(model, groups);
    model.reviewMessage = std::optional<std::string>("moved");
    model.searchText = std::string("npm");
    EXPECT_EQ(now().reviewMessage, "moved");
    stage.cleanup.clearReviewMessage();
    EXPECT_EQ(now().reviewMessage, "");
}

// Action bar.

TEST_F(ScreenState, WithNothingSelectedTheButtonIsDisabledAndReadsZero) {
    showGroups(model, groups);
    model.toggleGroup((*model.groups)[0]);
    model.selectedItemIDs = URLSet();
    EXPECT_FALSE(now().canRecover);
    EXPECT_EQ(now().recoverLabel, localized("action.recover %@", formatBytes(0)));
    EXPECT_EQ(now().summaryLine, localized("action.selectedSummary %1$@ %2$lld", formatBytes(0), 0));
}

TEST_F(ScreenState, TheSummaryCountsGroups) {
    showGroups(model, groups);
    model.toggleGroup((*model.groups)[0].id == "trash" ? (*model.groups)[0] : (*model.groups)[1]);
    EXPECT_EQ(now().summaryLine, localized("action.selectedSummary %1$@ %2$lld", formatBytes(15'000'000), 2));
    EXPECT_EQ(now().confirmSummary,
              localized("delete.confirm.summary %1$@ %2$@ %3$@", formatBytes(15'000'000),
                        localized("delete.confirm.groupCount %lld", 2),
                        localized("delete.confirm.itemCount %lld", 3)));
}

TEST_F(ScreenState, WhileVerdictsAreBeingMadeNothingCanBeDeletedAndThenItCanAgain) {
    showGroups(model, groups);
    ASSERT_TRUE(now().canRecover);
    EXPECT_EQ(now().hintLine, localized("action.permanentWarning"));
    model.analyzingKeys = std::unordered_set{EnrichmentKey::forURL(FileURL("/n"))};
    EXPECT_FALSE(now().canRecover);
    EXPECT_EQ(now().hintLine, localized("action.waitingAI"));
    model.analyzingKeys = std::unordered_set<EnrichmentKey>();
    EXPECT_TRUE(now().canRecover);
    EXPECT_EQ(now().hintLine, localized("action.permanentWarning"));
}

TEST_F(ScreenState, ARunningScanOrDeletionDisablesTheButtons) {
    showGroups(model, groups);
    EXPECT_TRUE(now().canScan());
    for (const CleanupPhase& phase : {CleanupPhase::scanning(), CleanupPhase::cleaning()}) {
        model.phase = phase;
        EXPECT_FALSE(now().canRecover);
        EXPECT_FALSE(now().canScan());
    }
    model.phase = CleanupPhase::error("x");
    EXPECT_TRUE(now().canRecover);
    EXPECT_TRUE(now().canScan());
}

TEST_F(ScreenState, ADeletionTellsHowFarItHasCome) {
    showGroups(model, groups);
    model.phase = CleanupPhase::cleaning();
    model.deletionProgress = std::optional(DeletionProgress{3, 12, 3'100'000'000, 6'200'000'000, "na\xFFme"});
    EXPECT_EQ(now().deletingLine,
              localized("action.deleting.progress %1$lld %2$lld %3$@", 3, 12, formatBytes(3'100'000'000)));
    EXPECT_EQ(now().deletingItem, localized("action.deleting.item %@", "na\\xFFme"));
    EXPECT_DOUBLE_EQ(now().deletingFraction, 0.5);
}

// Confirm word.

TEST_F(ScreenState, TheConfirmWordFollowsTheLanguage) {
    EXPECT_EQ(now().confirmWord, catalogText("delete.confirm.word", Language::english));
    setCurrentLanguage(Language::portuguese);
    EXPECT_EQ(now().confirmWord, catalogText("delete.confirm.word", Language::portuguese));
    EXPECT_NE(catalogText("delete.confirm.word", Language::english),
              catalogText("delete.confirm.word", Language::portuguese));
    EXPECT_EQ(now().confirmPrompt, localized("delete.confirm.prompt %@", now().confirmWord));
}

TEST_F(ScreenState, OnlyTheVeryWordConfirms) {
    const QString word = stage.cleanup.confirmWord();
    EXPECT_TRUE(stage.cleanup.isConfirmWord(word));
    EXPECT_FALSE(stage.cleanup.isConfirmWord(word + " "));
    EXPECT_FALSE(stage.cleanup.isConfirmWord(" " + word));
    EXPECT_FALSE(stage.cleanup.isConfirmWord(word.toLower()));
    EXPECT_FALSE(stage.cleanup.isConfirmWord(QString()));
}

} // namespace
} // namespace vesko
