#include "ui/CleanupScreen.h"
#include "base/ByteFormat.h"
#include "base/StringCatalog.h"
#include "ui/ScreenStage.h"
#include <QClipboard>
#include <QGuiApplication>
#include <gtest/gtest.h>

namespace vesko {
namespace {

using namespace testing;

class Screen : public ::testing::Test {
protected:
    void SetUp() override {
        QObject::connect(&screen, &CleanupScreen::announced, &screen,
                         [this] { said.push_back(screen.announcement().toStdString()); });
        QObject::connect(&screen, &CleanupScreen::scrollRequested, &screen,
                         [this](int row) { scrolled.push_back(row); });
    }

    ScreenStage stage;
    CleanupViewModel& model = *stage.model;
    CleanupScreen& screen = stage.cleanup;
    std::vector<std::string> said;
    std::vector<int> scrolled;
    const std::vector<CleanupGroup> groups{
        group("cache.npm", {item("/n", 9'000'000)}),
        group("trash", {item("/t/1", 4'000'000), item("/t/2", 2'000'000)}),
    };
};

TEST_F(Screen, ManyChangesInOneTurnAreTakenOverOnce) {
    int told = 0;
    QObject::connect(&screen, &CleanupScreen::changed, &screen, [&] { ++told; });
    showGroups(model, groups);
    model.indexedBytes = std::int64_t{1};
    model.indexedBytes = std::int64_t{2'000'000};
    EXPECT_EQ(told, 0);
    stage.settle();
    EXPECT_EQ(told, 1);
}

TEST_F(Screen, TheBeginningAndTheEndOfAScanAreAnnounced) {
    model.phase = CleanupPhase::scanning();
    stage.settle();
    showGroups(model, groups);
    stage.settle();
    model.phase = CleanupPhase::idle();
    stage.settle();
    EXPECT_EQ(said, (std::vector{localized("a11y.announce.scanStarted"),
                                 localized("a11y.announce.scanFinished %@", formatBytes(15'000'000))}));
}

TEST_F(Screen, ACancelledScanIsAnnouncedAsThat) {
    model.phase = CleanupPhase::scanning();
    stage.settle();
    screen.cancelScan();
    stage.settle();
    EXPECT_EQ(said.back(), localized("a11y.announce.scanCancelled"));
}

TEST_F(Screen, ADeletionIsAnnouncedWithItsOutcome) {
    showGroups(model, groups);
    model.phase = CleanupPhase::cleaning();
    stage.settle();
    model.cleanupMessage = std::optional<std::string>("2 items deleted.");
    model.phase = CleanupPhase::idle();
    stage.settle();
    ASSERT_EQ(said.size(), 2u);
    EXPECT_EQ(said[0], localized("a11y.announce.deleteStarted"));
    EXPECT_EQ(said[1], localized("a11y.announce.deleteFinished") + " 2 items deleted.");
}

TEST_F(Screen, ASegmentScrollsToTheFirstGroupOfItsBand) {
    showGroups(model, groups);
    stage.settle();
    screen.scrollToSection(QStringLiteral("caches"));
    EXPECT_EQ(scrolled, std::vector{screen.list()->rowOfGroup("cache.npm")});
    screen.scrollToSection(QStringLiteral("installers"));
    EXPECT_EQ(scrolled.size(), 1u);
}

TEST_F(Screen, ARequestToScrollIsAnsweredWhenTheListIsShown) {
    showGroups(model, groups);
    stage.settle();
    screen.setListShown(true);
    model.requestScrollToCategory("system");
    stage.settle();
    EXPECT_EQ(scrolled, std::vector{screen.list()->rowOfGroup("trash")});
    EXPECT_FALSE(*model.scrollToConsultantCategoryPending);
    EXPECT_FALSE(model.pendingConsultantCategoryID->has_value());
}

TEST_F(Screen, ARequestWaitsUntilTheListComesOnScreen) {
    showGroups(model, groups);
    model.requestScrollToCategory("system");
    stage.settle();
    EXPECT_TRUE(scrolled.empty());
    EXPECT_TRUE(*model.scrollToConsultantCategoryPending);
    screen.setListShown(true);
    stage.settle();
    EXPECT_EQ(scrolled.size(), 1u);
    EXPECT_FALSE(*model.scrollToConsultantCategoryPending);
}

TEST_F(Screen, ARequestForACategoryWithoutGroupsIsClearedAndScrollsNothing) {
    showGroups(model, groups);
    screen.setListShown(true);
    model.requestScrollToCategory("backups");
    stage.settle();
    EXPECT_TRUE(scrolled.empty());
    EXPECT_FALSE(*model.scrollToConsultantCategoryPending);
    EXPECT_FALSE(model.pendingConsultantCategoryID->has_value());
}

TEST_F(Screen, TheLargestGroupIsScrolledToWhenAsked) {
    showGroups(model, groups);
    screen.setListShown(true);
    model.scrollToLargestGroupPending = true;
    stage.settle();
    EXPECT_EQ(scrolled, std::vector{screen.list()->rowOfGroup("cache.npm")});
    EXPECT_FALSE(*model.scrollToLargestGroupPending);
}

TEST_F(Screen, ThePathOfARowIsCopiedWhole) {
    showGroups(model, groups);
    stage.settle();
    screen.list()->setExpanded(screen.list()->rowOfGroup("trash"), true);
    screen.copyPath(screen.list()->rowOfGroup("trash") + 2);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "/t/2");
}

TEST_F(Screen, AGroupOfOneItemCanBeRevealedAndOneOfSeveralCannot) {
    showGroups(model, groups);
    stage.settle();
    EXPECT_TRUE(screen.canReveal(screen.list()->rowOfGroup("cache.npm")));
    EXPECT_FALSE(screen.canReveal(screen.list()->rowOfGroup("trash")));
    EXPECT_FALSE(screen.canReveal(0));
}

} // namespace
} // namespace vesko
