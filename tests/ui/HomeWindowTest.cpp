// The Home screen in a real window, driven as a person or an assistive tool drives it.
#include "base/ByteFormat.h"
#include "base/StringCatalog.h"
#include "ui/WindowDriver.h"
#include <QQuickItem>
#include <QTest>
#include <gtest/gtest.h>

namespace vesko {
namespace {

using namespace testing;

QString text(const char* key) { return QString::fromStdString(localized(key)); }

class HomeWindow : public ::testing::Test {
protected:
    void show() {
        driver.show();
        enterState(driver.stage, QStringLiteral("home"));
    }
    HomeViewModel& home() { return *driver.stage.homeModel; }
    CleanupViewModel& cleanup() { return *driver.stage.model; }
    QString selection() { return driver.stage.shell.selection(); }

    static QString named(const StorageCategoryBucket& bucket) {
        return QString::fromStdString(
            localized("a11y.segment %1$@ %2$@", localized(bucket.titleKey), formatBytes(bucket.bytes)));
    }
    QString rowName(const char* bucketID) { return named(*home().bucket(bucketID)); }
    /// The row of a bucket: the last of its name, behind the bar's segment.
    QQuickItem* row(int place) { return driver.items("StorageBucketRow").value(place); }
    /// The segments' widths, in order.
    std::vector<double> segmentWidths() {
        std::vector<double> widths;
        QAccessibleInterface* bar = driver.find(QAccessible::Grouping, text("a11y.storageBar"));
        for (int i = 0; bar && i < bar->childCount(); ++i)
            widths.push_back(qobject_cast<QQuickItem*>(bar->child(i)->object())->width());
        return widths;
    }

    WindowDriver driver;
};

// Before anything is measured.

TEST_F(HomeWindow, BeforeTheFirstMeasurementASkeletonStandsAndTheShortcutsWork) {
    driver.show();
    EXPECT_TRUE(driver.find(QAccessible::Grouping, text("skeleton.loading")));
    EXPECT_FALSE(driver.find(QAccessible::Heading, text("home.storage.title")));
    driver.press(QAccessible::Button, text("home.shortcut.scanNow"));
    driver.waitFor([&] { return driver.stage.scansStarted == 1; });
    driver.press(QAccessible::Button, text("home.shortcut.reviewCleanup"));
    EXPECT_EQ(selection(), "cleanup");
    driver.stage.shell.setSelection(QStringLiteral("home"));
    showDashboard(driver.stage, sampleBuckets());
    driver.stage.settle();
    EXPECT_FALSE(driver.find(QAccessible::Grouping, text("skeleton.loading")));
    EXPECT_TRUE(driver.find(QAccessible::Heading, text("home.storage.title")));
}

TEST_F(HomeWindow, NothingJumpsWhenTheDashboardTakesTheSkeletonsPlace) {
    driver.show();
    for (const double size : {13.0, 19.0, 26.0}) {
        driver.stage.window.theme().setBaseSize(size);
        home().dashboard = std::optional<StorageDashboard>();
        driver.stage.settle();
        QQuickItem* skeleton = driver.items("StorageSkeleton").value(0);
        ASSERT_TRUE(skeleton);
        const QRectF before = skeleton->mapRectToScene(skeleton->boundingRect());
        const double actions = driver.items("QuickActions").value(0)->mapToScene({}).y();
        const double bones = driver.items("Bone").value(2)->mapToScene({}).y();
        showDashboard(driver.stage, sampleBuckets());
        driver.stage.settle();
        QQuickItem* dashboard = driver.items("StorageDashboardView").value(0);
        EXPECT_EQ(dashboard->mapRectToScene(QRectF(0, 0, dashboard->width(), dashboard->implicitHeight())),
                  before);
        EXPECT_EQ(driver.items("StorageBar").value(0)->mapToScene({}).y(), bones);
        EXPECT_EQ(driver.items("QuickActions").value(0)->mapToScene({}).y(), actions);
    }
}

TEST_F(HomeWindow, WithNothingFoundTheReviewCardSaysSoAndStillLeadsToCleanup) {
    driver.show();
    QAccessibleInterface* card = driver.find(QAccessible::Button, text("home.shortcut.reviewCleanup"));
    ASSERT_TRUE(card);
    EXPECT_EQ(card->text(QAccessible::Description), text("home.shortcut.reviewCleanup.subtitleEmpty"));
    driver.press(QAccessible::Button, text("home.shortcut.reviewCleanup"));
    EXPECT_EQ(selection(), "cleanup");
    EXPECT_TRUE(driver.find(QAccessible::Heading, text("empty.awaitingScan.title")));
}

TEST_F(HomeWindow, ADisabledShortcutKeepsItsChevron) {
    show();
    cleanup().phase = CleanupPhase::scanning();
    driver.stage.settle();
    EXPECT_TRUE(driver.isDisabled(QAccessible::Button, text("home.shortcut.scanNow")));
    driver.key(Qt::Key_End);
    QQuickItem* card = driver.items("HomeShortcutCard").value(1);
    ASSERT_TRUE(card);
    const QList<QQuickItem*> icons = driver.items("vesko::Icon");
    EXPECT_TRUE(std::any_of(icons.begin(), icons.end(), [&](const QQuickItem* each) {
        return card->isAncestorOf(each) &&
               each->property("name").toString() == QLatin1String("chevron.right");
    }));
    driver.click(card);
    EXPECT_EQ(driver.stage.scansStarted, 0);
}

// The bar.

TEST_F(HomeWindow, ATinyBucketKeepsAVisibleSegment) {
    driver.show();
    std::vector<StorageCategoryBucket> buckets = sampleBuckets();
    buckets[0].bytes = 1;
    buckets[3].bytes = 0;
    showDashboard(driver.stage, buckets);
    driver.stage.settle();
    const std::vector<double> widths = segmentWidths();
    ASSERT_EQ(widths.size(), 6u);
    EXPECT_EQ(widths[0], 6);
    EXPECT_EQ(widths[3], 6);
    double sum = 5 * 2; // the gaps
    for (const double width : widths) {
        EXPECT_GE(width, 6);
        sum += width;
    }
    EXPECT_NEAR(sum, driver.items("StorageBar").value(0)->width(), 0.01);
}

TEST_F(HomeWindow, SegmentsAreToScale) {
    show();
    const std::vector<double> widths = segmentWidths();
    ASSERT_EQ(widths.size(), 6u);
    const double room = driver.items("StorageBar").value(0)->width() - 5 * 2;
    const std::vector<StorageCategoryBucket>& buckets = (*home().dashboard)->buckets;
    for (std::size_t i = 0; i < buckets.size(); ++i)
        EXPECT_NEAR(widths[i], room * static_cast<double>(buckets[i].bytes) / 500e9, 0.01) << buckets[i].id;
}

TEST_F(HomeWindow, ABarOfNothingIsStillDrawn) {
    driver.show();
    home().volume = DiskVolumeInfo{0, 0, "Casa", AvailableSpaceMetric::standard};
    showDashboard(driver.stage, StorageInventoryService::emptyMeasurableBuckets(FileURL("/none")));
    driver.stage.settle();
    for (const double width : segmentWidths()) EXPECT_EQ(width, 6);
}

TEST_F(HomeWindow, ASegmentSelectsItsBucketAndTheFreeSpaceNothing) {
    show();
    QAccessibleInterface* bar = driver.find(QAccessible::Grouping, text("a11y.storageBar"));
    ASSERT_TRUE(bar);
    driver.click(qobject_cast<QQuickItem*>(bar->child(2)->object()));
    EXPECT_EQ(*home().selectedBucketID, "media");
    bar = driver.find(QAccessible::Grouping, text("a11y.storageBar"));
    driver.click(qobject_cast<QQuickItem*>(bar->child(1)->object()));
    EXPECT_EQ(*home().selectedBucketID, "documents");
    EXPECT_EQ(bar->child(5)->role(), QAccessible::StaticText);
}

TEST_F(HomeWindow, TheCleanupScreenHasTheSameBarAndLegend) {
    show();
    EXPECT_EQ(driver.items("StorageBar").size(), 1);
    EXPECT_EQ(driver.items("StorageLegend").size(), 1);
    driver.stage.shell.setSelection(QStringLiteral("cleanup"));
    driver.stage.settle();
    EXPECT_EQ(driver.items("StorageBar").size(), 1);
    EXPECT_EQ(driver.items("StorageLegend").size(), 1);
    // Its legend does what the segments do.
    EXPECT_TRUE(driver.items("LegendChip").value(0)->property("interactive").toBool());
}

// Rows.

TEST_F(HomeWindow, ARowKeepsItsPlaceAndTheKeyboardWhileItFills) {
    driver.show();
    std::vector<StorageCategoryBucket> buckets = sampleBuckets();
    for (StorageCategoryBucket& each : buckets) each.bytes = 0;
    showDashboard(driver.stage, buckets, {"applications", "documents", "media", "library"});
    driver.stage.settle();
    QQuickItem* documents = row(1);
    ASSERT_TRUE(documents);
    EXPECT_TRUE(driver.find(QAccessible::Button, QString::fromStdString(localized(
                                                     "a11y.measuring %@", localized(buckets[1].titleKey)))));
    documents->forceActiveFocus();
    const QPointF place = documents->mapToScene({});
    buckets[2].bytes = 96'200'000'000;
    showDashboard(driver.stage, buckets, {"applications", "documents", "library"});
    driver.stage.settle();
    showDashboard(driver.stage, sampleBuckets());
    driver.stage.settle();
    EXPECT_EQ(row(1), documents) << "one and the same item";
    EXPECT_TRUE(documents->hasActiveFocus());
    EXPECT_EQ(documents->mapToScene({}), place);
    EXPECT_EQ(driver.focusedName(), rowName("documents"));
}

TEST_F(HomeWindow, ABusyRowCanStillBeOpened) {
    show();
    home().pendingBucketIDs = std::set<std::string>{"documents", "system"};
    driver.stage.settle();
    driver.click(row(1));
    EXPECT_EQ(*home().selectedBucketID, "documents");
    EXPECT_TRUE(driver.find(QAccessible::StaticText, text("home.storage.measuring")));
}

// The way to the Cleanup screen.

TEST_F(HomeWindow, AnOpportunityScrollsTheCleanupListToItsFirstGroup) {
    show();
    cleanup().searchText = std::string("npm");
    driver.stage.settle();
    driver.press(QAccessible::Button, QString::fromStdString(localized(
                                          "a11y.group %1$@ %2$@ %3$@", consultantCategoryTitle("downloads"),
                                          localized("safety.revisar"), formatBytes(13'600'000'000))));
    EXPECT_EQ(selection(), "cleanup");
    EXPECT_FALSE(*cleanup().scrollToConsultantCategoryPending);
    EXPECT_FALSE(cleanup().pendingConsultantCategoryID->has_value());
    CleanupListModel& list = *driver.stage.cleanup.list();
    QQuickItem* view = driver.item("QQuickListView");
    const int place = list.rowOfGroup("downloads.stale");
    ASSERT_GE(place, 0);
    EXPECT_EQ(view->property("currentIndex").toInt(), place);
    QQuickItem* group = nullptr;
    QMetaObject::invokeMethod(view, "itemAtIndex", Q_RETURN_ARG(QQuickItem*, group), Q_ARG(int, place));
    ASSERT_TRUE(group);
    const double top = group->mapToItem(view, {}).y();
    EXPECT_GE(top, 0);
    EXPECT_LE(top + group->height(), view->height());
}

TEST_F(HomeWindow, ACategoryIsShownAsSoonAsThereIsAList) {
    show();
    driver.stage.homeScreen.openCategory(QStringLiteral("downloads"));
    cleanup().groups = std::vector<CleanupGroup>();
    driver.stage.settle();
    EXPECT_TRUE(*cleanup().scrollToConsultantCategoryPending);
    showGroups(cleanup(), sampleGroups());
    driver.stage.settle();
    EXPECT_FALSE(*cleanup().scrollToConsultantCategoryPending);
    EXPECT_EQ(driver.item("QQuickListView")->property("currentIndex").toInt(),
              driver.stage.cleanup.list()->rowOfGroup("downloads.stale"));
}

// The keyboard alone.

TEST_F(HomeWindow, EverythingIsReachedByTabAndScrolledTo) {
    show();
    driver.window()->resize(900, 600);
    driver.stage.settle();
    QStringList reached;
    for (int i = 0; i < 16; ++i) {
        driver.key(Qt::Key_Tab);
        reached.append(driver.focusedName());
        const QQuickItem* focused = driver.window()->activeFocusItem();
        const QRectF place = focused->mapRectToScene(QRectF(0, 0, focused->width(), focused->height()));
        EXPECT_GE(place.top(), 0) << reached.last().toStdString();
        EXPECT_LE(place.bottom(), 600) << reached.last().toStdString();
    }
    for (const StorageCategoryBucket& bucket : (*home().dashboard)->buckets)
        EXPECT_TRUE(reached.contains(named(bucket))) << bucket.id;
    for (const ConsultantCategorySummary& each : (*home().dashboard)->cleanupInsights->categories) {
        const QString title = QString::fromStdString(consultantCategoryTitle(each.category.id)) + ", ";
        EXPECT_FALSE(reached.filter(title).isEmpty()) << title.toStdString();
    }
    EXPECT_TRUE(reached.contains(text("home.shortcut.reviewCleanup")));
    EXPECT_TRUE(reached.contains(text("home.shortcut.scanNow")));
}

TEST_F(HomeWindow, UpAndDownMoveThroughTheRows) {
    show();
    driver.tabTo(rowName("applications"), QAccessible::Button);
    driver.key(Qt::Key_Down);
    EXPECT_EQ(driver.focusedName(), rowName("documents"));
    driver.key(Qt::Key_Down);
    driver.key(Qt::Key_Up);
    EXPECT_EQ(driver.focusedName(), rowName("documents"));
    driver.key(Qt::Key_Up);
    driver.key(Qt::Key_Up); // none above the first
    EXPECT_EQ(driver.focusedName(), rowName("applications"));
    for (int i = 0; i < 20; ++i) driver.key(Qt::Key_Down);
    EXPECT_EQ(driver.focusedName(), text("home.shortcut.scanNow"));
}

TEST_F(HomeWindow, ThePageScrollsByKeys) {
    show();
    QQuickItem* scroll = driver.items("QQuickFlickable").value(0);
    ASSERT_TRUE(scroll);
    driver.key(Qt::Key_End);
    const double end = scroll->property("contentY").toDouble();
    EXPECT_EQ(end, scroll->property("contentHeight").toDouble() - scroll->height());
    driver.key(Qt::Key_Home);
    EXPECT_EQ(scroll->property("contentY").toDouble(), 0);
    driver.key(Qt::Key_Down);
    EXPECT_GT(scroll->property("contentY").toDouble(), 0);
    driver.key(Qt::Key_PageDown);
    EXPECT_GT(scroll->property("contentY").toDouble(), 100);
}

// Staying true.

TEST_F(HomeWindow, IsBroughtUpToDateWhenItAppearsAndWhenTheWindowBecomesActive) {
    driver.show();
    driver.stage.homeScreen.start();
    driver.waitFor([&] { return home().dashboard->has_value() && !*home().isLoadingInventory; });
    const auto expectReading = [this](const char* when, const std::function<void()>& happens) {
        const int before = driver.stage.volumes->readings;
        driver.stage.volumes->volume.availableBytes -= 1'000'000'000;
        happens();
        driver.waitFor([&] { return driver.stage.volumes->readings > before; });
        driver.waitFor([&] { return *home().volume == driver.stage.volumes->volume; });
        EXPECT_EQ((*home().dashboard)->totalUsedBytes, home().usedBytes()) << when;
    };
    expectReading("the screen appears", [this] {
        driver.stage.shell.setSelection(QStringLiteral("cleanup"));
        driver.stage.settle();
        driver.stage.shell.setSelection(QStringLiteral("home"));
    });
    expectReading("the window becomes active", [this] {
        QWindow other;
        other.show();
        other.requestActivate();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&other, 5000));
        driver.window()->requestActivate();
        ASSERT_TRUE(QTest::qWaitForWindowActive(driver.window(), 5000));
    });
}

} // namespace
} // namespace vesko
