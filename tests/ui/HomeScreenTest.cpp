#include "ui/HomeScreen.h"
#include "base/ByteFormat.h"
#include "base/StringCatalog.h"
#include "ui/ScreenStage.h"
#include <QCoreApplication>
#include <QElapsedTimer>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vesko {
namespace {

using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class TheHomeScreen : public ::testing::Test {
protected:
    void showHome() {
        showGroups(*stage.model, sampleGroups());
        showDashboard(stage, sampleBuckets());
        stage.settle();
    }
    void waitFor(const std::function<bool()>& isSo) {
        QElapsedTimer waited;
        waited.start();
        while (!isSo() && waited.elapsed() < 10'000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        EXPECT_TRUE(isSo()) << "waited in vain";
    }
    static std::vector<std::string> ids(const HomeListModel& list) {
        std::vector<std::string> all;
        for (const HomeRow& row : list.rows()) all.push_back(row.id);
        return all;
    }
    static std::vector<std::string> busy(const HomeListModel& list) {
        std::vector<std::string> all;
        for (const HomeRow& row : list.rows())
            if (row.isBusy) all.push_back(row.id);
        return all;
    }
    static std::string text(const QString& value) { return value.toStdString(); }

    ScreenStage stage;
    HomeScreen& screen = stage.homeScreen;
};

// The volume.

TEST_F(TheHomeScreen, TellsTheVolumeInItsHeaderAndInTheSidebar) {
    EXPECT_EQ(text(screen.availableLine()),
              localized("home.availableAmount %@", formatBytes(83'420'000'000)));
    EXPECT_EQ(text(screen.volumeLine()),
              localized("home.volumeSummary %@ %@", formatBytes(500'000'000'000), "Casa"));
    EXPECT_EQ(
        text(stage.shell.freeSpace()),
        localized("sidebar.freeSpace %1$@ %2$@", formatBytes(83'420'000'000), formatBytes(500'000'000'000)));
}

TEST_F(TheHomeScreen, SaysNothingOfAVolumeThatWasNotReadYet) {
    const auto unread = std::make_shared<HomeViewModel>(HomeViewModelParts{
        .tasks = stage.life.tasks(),
        .inventorySizer = stage.sizes,
        .store = std::make_shared<StorageInventoryStore>(stage.home.url("none/storage-inventory.json")),
        .volumeReader = stage.volumes,
        .makeStream = stage.streams.maker()});
    const HomeScreen other(unread, stage.model, stage.shell);
    EXPECT_EQ(text(other.availableLine()), "");
    EXPECT_EQ(text(other.volumeLine()), "");
}

TEST_F(TheHomeScreen, AVolumeWhoseFiguresCannotBeReadShowsZero) {
    stage.homeModel->volume = DiskVolumeInfo{0, 0, "Casa", AvailableSpaceMetric::standard};
    showDashboard(stage, sampleBuckets());
    stage.settle();
    EXPECT_EQ(text(screen.availableLine()), localized("home.availableAmount %@", formatBytes(0)));
    EXPECT_EQ(text(screen.volumeLine()), localized("home.volumeSummary %@ %@", formatBytes(0), "Casa"));
    EXPECT_EQ(screen.buckets()->rows().back().amount, formatBytes(0));
}

TEST_F(TheHomeScreen, ReadsTheVolumeAnewOnAWorkerAlsoBeforeItHasStarted) {
    stage.volumes->volume.availableBytes = 10'000'000'000;
    screen.bringUpToDate();
    waitFor([&] { return stage.shell.freeSpace().startsWith(QStringLiteral("10 GB")); });
    EXPECT_EQ(text(screen.availableLine()),
              localized("home.availableAmount %@", formatBytes(10'000'000'000)));
    EXPECT_THAT(stage.sizes->calls(), IsEmpty());
    EXPECT_FALSE(screen.hasDashboard());
}

// The shortcuts.

TEST_F(TheHomeScreen, WithNothingFoundTheReviewCardSaysSoAndStillLeadsToCleanup) {
    EXPECT_EQ(text(screen.reviewSubtitle()), localized("home.shortcut.reviewCleanup.subtitleEmpty"));
    screen.reviewCleanup();
    EXPECT_EQ(stage.shell.selection(), "cleanup");
}

TEST_F(TheHomeScreen, WithSomethingFoundTheReviewCardTellsTheAmount) {
    stage.model->foundTotalBytes = std::int64_t{12'000'000};
    stage.settle();
    EXPECT_EQ(text(screen.reviewSubtitle()),
              localized("home.shortcut.reviewCleanup.subtitle %@", formatBytes(12'000'000)));
}

TEST_F(TheHomeScreen, TheScanCardIsDisabledWhileAScanOrADeletionRuns) {
    EXPECT_TRUE(screen.canScan());
    stage.model->phase = CleanupPhase::scanning();
    stage.settle();
    EXPECT_FALSE(screen.canScan());
    EXPECT_EQ(text(screen.scanSubtitle()), localized("home.shortcut.scanNow.running"));
    stage.model->phase = CleanupPhase::cleaning();
    stage.settle();
    EXPECT_FALSE(screen.canScan());
    screen.scanNow();
    stage.settle();
    EXPECT_EQ(stage.model->phase->kind, CleanupPhase::Kind::cleaning);
    stage.model->phase = CleanupPhase::error("x");
    stage.settle();
    EXPECT_TRUE(screen.canScan());
}

// Measuring.

TEST_F(TheHomeScreen, AMeasurementFillsTheDashboardFromTheRealModel) {
    const std::string home = stage.home.root().path();
    stage.sizes->bytes = {{home + "/Documents", 7'000'000}, {home + "/Music", 5'000'000}};
    ASSERT_FALSE(screen.hasDashboard());
    screen.start();
    waitFor([&] { return screen.hasDashboard() && !*stage.homeModel->isLoadingInventory; });
    stage.settle();
    EXPECT_THAT(ids(*screen.buckets()),
                ElementsAre("applications", "documents", "media", "library", "system"));
    EXPECT_EQ(screen.buckets()->rows()[1].amount, formatBytes(7'000'000));
    EXPECT_EQ(screen.buckets()->rows()[2].amount, formatBytes(5'000'000));
    EXPECT_EQ(screen.buckets()->rows()[4].amount, formatBytes(416'580'000'000 - 12'000'000));
    EXPECT_THAT(busy(*screen.buckets()), IsEmpty());
    EXPECT_EQ(text(screen.storageSubtitle()), localized("home.storage.subtitle %@", "Casa"));
}

TEST_F(TheHomeScreen, StartsTheWatcherBeforeTheLoadAndOnce) {
    stage.home.folder("Documents");
    screen.start();
    screen.start();
    waitFor([&] { return screen.hasDashboard() && !*stage.homeModel->isLoadingInventory; });
    waitFor([&] { return stage.streams.requests.size() == 1; });
    EXPECT_EQ(stage.sizes->calls().size(), 9u) << "each place of the four buckets once";
}

TEST_F(TheHomeScreen, BringingItUpToDateMeasuresNothingThatIsFresh) {
    screen.start();
    waitFor([&] { return screen.hasDashboard() && !*stage.homeModel->isLoadingInventory; });
    stage.sizes->forgetCalls();
    screen.bringUpToDate();
    stage.homeModel->pendingBucketIDs = std::set<std::string>{"media"};
    waitFor([&] { return stage.homeModel->pendingBucketIDs->empty(); });
    EXPECT_THAT(stage.sizes->calls(), IsEmpty());
}

TEST_F(TheHomeScreen, APendingBucketIsBusyUntilItIsMeasured) {
    showHome();
    stage.homeModel->pendingBucketIDs = std::set<std::string>{"documents", "system"};
    stage.settle();
    EXPECT_THAT(busy(*screen.buckets()), ElementsAre("documents", "system"));
    stage.homeModel->pendingBucketIDs = std::set<std::string>{};
    stage.settle();
    EXPECT_THAT(busy(*screen.buckets()), IsEmpty());
}

TEST_F(TheHomeScreen, TheBarHoldsTheBucketsInOrderThenTheFreeSpace) {
    showHome();
    std::vector<std::string> told;
    std::int64_t sum = 0;
    for (const QVariant& each : screen.segments()) {
        const QVariantMap segment = each.toMap();
        told.push_back(segment.value(QStringLiteral("id")).toString().toStdString());
        sum += segment.value(QStringLiteral("bytes")).toLongLong();
        EXPECT_EQ(segment.value(QStringLiteral("interactive")).toBool(), told.back() != "available");
    }
    EXPECT_THAT(told, ElementsAre("applications", "documents", "media", "library", "system", "available"));
    EXPECT_EQ(sum, 500'000'000'000);
    std::vector<std::string> legend;
    for (const QVariant& each : screen.legend())
        legend.push_back(each.toMap().value(QStringLiteral("title")).toString().toStdString());
    EXPECT_THAT(legend, ElementsAre(localized("home.used"), localized("home.free")));
}

TEST_F(TheHomeScreen, ManyChangesInOneTurnAreTakenOverOnce) {
    int told = 0;
    QObject::connect(&screen, &HomeScreen::changed, &screen, [&] { ++told; });
    showGroups(*stage.model, sampleGroups());
    showDashboard(stage, sampleBuckets());
    stage.homeModel->pendingBucketIDs = std::set<std::string>{"media"};
    EXPECT_EQ(told, 0);
    stage.settle();
    EXPECT_EQ(told, 1);
}

// What can go.

TEST_F(TheHomeScreen, TheOpportunitiesFollowTheCleanupList) {
    showDashboard(stage, sampleBuckets());
    stage.settle();
    EXPECT_THAT(ids(*screen.opportunities()), IsEmpty());
    showGroups(*stage.model, sampleGroups());
    waitFor([&] { return screen.opportunities()->count() > 0; });
    ASSERT_THAT(ids(*screen.opportunities()), ElementsAre("xcode-builds", "caches", "downloads", "system"));
    std::int64_t all = 0;
    for (const CleanupGroup& each : *stage.model->groups)
        for (const ScannableItem& one : each.items) all += one.size;
    EXPECT_EQ(text(screen.opportunitiesSubtitle()),
              localized("home.storage.cleanupOpportunities.subtitle %@", formatBytes(all)));
    EXPECT_EQ(screen.opportunities()->rows()[0].detail, consultantCategoryExplanation("xcode-builds"));
    showGroups(*stage.model, {});
    waitFor([&] { return screen.opportunities()->count() == 0; });
}

TEST_F(TheHomeScreen, AnOpportunityLeadsToItsCategoryOnTheCleanupScreen) {
    showHome();
    stage.model->searchText = std::string("zzz");
    const auto trigger = *stage.model->scrollToConsultantCategoryTrigger;
    screen.openCategory(QStringLiteral("downloads"));
    EXPECT_EQ(*stage.model->pendingConsultantCategoryID, "downloads");
    EXPECT_TRUE(*stage.model->scrollToConsultantCategoryPending);
    EXPECT_NE(*stage.model->scrollToConsultantCategoryTrigger, trigger);
    EXPECT_EQ(stage.shell.selection(), "cleanup");
    EXPECT_EQ(*stage.model->searchText, "") << "a search may hide what is to be shown";
}

// The inspector.

TEST_F(TheHomeScreen, SelectingABucketOpensTheInspectorAndClearingClosesIt) {
    showHome();
    EXPECT_FALSE(screen.inspectorOpen());
    screen.selectBucket(QStringLiteral("library"));
    stage.settle();
    EXPECT_EQ(*stage.homeModel->selectedBucketID, "library");
    EXPECT_TRUE(screen.inspectorOpen());
    EXPECT_EQ(text(screen.inspectorTitle()), localized("home.storage.bucket.library"));
    EXPECT_EQ(text(screen.inspectorExplanation()), localized("home.storage.bucket.library.explanation"));
    ASSERT_FALSE(sampleBuckets()[3].paths.empty());
    EXPECT_EQ(screen.inspectorPaths(), QStringList{QString::fromStdString(sampleBuckets()[3].paths[0])});
    EXPECT_THAT(ids(*screen.inspectorSummaries()), ElementsAre("xcode-builds", "caches", "system"));
    EXPECT_EQ(text(screen.inspectorFoundAmount()), formatBytes(70'386'000'000));
    screen.clearSelection();
    stage.settle();
    EXPECT_FALSE(screen.inspectorOpen());
    EXPECT_FALSE(stage.homeModel->selectedBucketID->has_value());
}

TEST_F(TheHomeScreen, ABucketInWhichNothingWasFoundTellsNoAmount) {
    showHome();
    screen.selectBucket(QStringLiteral("media"));
    stage.settle();
    EXPECT_EQ(text(screen.inspectorFoundAmount()), "");
    EXPECT_THAT(ids(*screen.inspectorSummaries()), IsEmpty());
}

TEST_F(TheHomeScreen, ABucketThatIsNotThereIsNotSelected) {
    screen.selectBucket(QStringLiteral("documents"));
    EXPECT_FALSE(stage.homeModel->selectedBucketID->has_value()) << "no dashboard yet";
    showHome();
    screen.selectBucket(QStringLiteral("nothing"));
    EXPECT_FALSE(stage.homeModel->selectedBucketID->has_value());
}

TEST_F(TheHomeScreen, TheRemainderHasNoPathsAndIsSelectedAllTheSame) {
    showHome();
    screen.selectBucket(QStringLiteral("system"));
    stage.settle();
    EXPECT_TRUE(screen.inspectorOpen());
    EXPECT_TRUE(screen.inspectorPaths().isEmpty());
}

TEST_F(TheHomeScreen, ReviewInCleanupClosesTheInspectorAndGoesToTheFirstCategoryThatHasSomething) {
    showHome();
    screen.selectBucket(QStringLiteral("library"));
    stage.settle();
    screen.reviewInCleanup();
    EXPECT_FALSE(stage.homeModel->selectedBucketID->has_value());
    EXPECT_EQ(stage.shell.selection(), "cleanup");
    EXPECT_EQ(*stage.model->pendingConsultantCategoryID, "caches");

    showGroups(*stage.model, {group("trash", {item("/t/1", 4'000'000)})});
    stage.shell.setSelection(QStringLiteral("home"));
    screen.selectBucket(QStringLiteral("library"));
    screen.reviewInCleanup();
    EXPECT_EQ(*stage.model->pendingConsultantCategoryID, "system") << "caches has nothing now";
}

TEST_F(TheHomeScreen, ReviewInCleanupOfABucketWithoutCategoriesOpensTheScreenAsItIs) {
    showHome();
    screen.selectBucket(QStringLiteral("media"));
    screen.reviewInCleanup();
    EXPECT_FALSE(stage.homeModel->selectedBucketID->has_value());
    EXPECT_EQ(stage.shell.selection(), "cleanup");
    EXPECT_FALSE(*stage.model->scrollToConsultantCategoryPending);
}

TEST_F(TheHomeScreen, FollowsTheLanguage) {
    showHome();
    screen.selectBucket(QStringLiteral("library"));
    stage.settle();
    setCurrentLanguage(Language::portuguese);
    screen.languageChanged();
    EXPECT_EQ(screen.buckets()->rows()[2].title,
              catalogText("home.storage.bucket.media", Language::portuguese));
    EXPECT_EQ(text(screen.inspectorTitle()),
              catalogText("home.storage.bucket.library", Language::portuguese));
    EXPECT_TRUE(text(screen.availableLine()).ends_with("disponíveis"));
}

} // namespace
} // namespace vesko
