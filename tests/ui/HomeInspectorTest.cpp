// The column at the right of the Home screen: opening, closing, its width, and where the keyboard goes.
#include "base/ByteFormat.h"
#include "base/StringCatalog.h"
#include "ui/WindowDriver.h"
#include <QElapsedTimer>
#include <QQuickItem>
#include <QTest>
#include <gtest/gtest.h>

namespace vesko {
namespace {

using namespace testing;

QString text(const char* key) { return QString::fromStdString(localized(key)); }

class Inspector : public ::testing::Test {
protected:
    void SetUp() override {
        driver.show();
        enterState(driver.stage, QStringLiteral("home"));
    }
    HomeViewModel& home() { return *driver.stage.homeModel; }
    QQuickItem* row(int place) { return driver.items("StorageBucketRow").value(place); }
    QString rowName(const char* bucketID) {
        const StorageCategoryBucket bucket = *home().bucket(bucketID);
        return QString::fromStdString(
            localized("a11y.segment %1$@ %2$@", localized(bucket.titleKey), formatBytes(bucket.bytes)));
    }
    QQuickItem* column() { return driver.items("StorageInspectorView").value(0); }
    bool isOpen() { return column() != nullptr; }
    QString title() {
        QAccessibleInterface* pane = nullptr;
        for (QAccessibleInterface* each : driver.all(QAccessible::Pane))
            if (each->object() == column()) pane = each;
        return pane ? pane->text(QAccessible::Name) : QString();
    }

    WindowDriver driver;
};

TEST_F(Inspector, IsOpenWhileABucketIsSelected) {
    EXPECT_FALSE(isOpen());
    driver.click(row(0));
    ASSERT_TRUE(isOpen());
    EXPECT_EQ(title(), text("home.storage.bucket.applications"));
    EXPECT_EQ(column()->mapToScene({column()->width(), 0}).x(), driver.window()->width());
    driver.click(row(3));
    EXPECT_EQ(title(), text("home.storage.bucket.library"));
    home().selectedBucketID = std::optional<std::string>();
    driver.stage.settle();
    EXPECT_FALSE(isOpen());
}

TEST_F(Inspector, TellsWhatTheBucketIsWhereItLiesAndWhatCanGo) {
    driver.click(row(1));
    const StorageCategoryBucket bucket = *home().bucket("documents");
    EXPECT_TRUE(driver.find(QAccessible::Heading, text("home.storage.inspector.whatIsThis")));
    EXPECT_TRUE(driver.find(QAccessible::StaticText, text("home.storage.bucket.documents.explanation")));
    EXPECT_TRUE(driver.find(QAccessible::Heading, text("home.storage.inspector.paths")));
    for (const std::string& path : bucket.paths)
        EXPECT_TRUE(driver.find(QAccessible::StaticText, QString::fromStdString(path))) << path;
    EXPECT_TRUE(driver.find(QAccessible::Heading, text("home.storage.inspector.foundForCleanup")));
    EXPECT_TRUE(driver.find(QAccessible::StaticText, QString::fromStdString(formatBytes(13'600'000'000))));
    driver.click(row(2)); // pictures, films and music: nothing is ever found there
    EXPECT_FALSE(driver.find(QAccessible::Heading, text("home.storage.inspector.foundForCleanup")));
    driver.click(row(4)); // the remainder lies nowhere
    EXPECT_FALSE(driver.find(QAccessible::Heading, text("home.storage.inspector.paths")));
}

TEST_F(Inspector, AClickOnTheHeaderClosesItAndWithNoneOpenChangesNothing) {
    QQuickItem* header = driver.items("VolumeHeader").value(0);
    const QString before = accessibleTree(driver.window());
    driver.click(header);
    EXPECT_EQ(accessibleTree(driver.window()), before);
    EXPECT_FALSE(home().selectedBucketID->has_value());
    driver.click(row(3));
    ASSERT_TRUE(isOpen());
    driver.click(header);
    EXPECT_FALSE(isOpen());
    EXPECT_FALSE(home().selectedBucketID->has_value());
    EXPECT_EQ(accessibleTree(driver.window()), before);
}

TEST_F(Inspector, AClickBesideTheRowsClosesItToo) {
    driver.click(row(3));
    ASSERT_TRUE(isOpen());
    driver.click(driver.items("SectionTitle").value(0));
    EXPECT_FALSE(isOpen());
}

TEST_F(Inspector, OpenedByTheKeyboardItTakesItAndGivesItBack) {
    driver.tabTo(rowName("media"), QAccessible::Button);
    driver.key(Qt::Key_Return);
    ASSERT_TRUE(isOpen());
    EXPECT_EQ(driver.focusedName(), text("a11y.closeInspector"));
    driver.tabTo(text("home.storage.reviewInCleanup"), QAccessible::Button);
    driver.key(Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(driver.focusedName(), rowName("media"));
    driver.key(Qt::Key_Space);
    ASSERT_TRUE(isOpen());
    driver.key(Qt::Key_Space); // on its own button
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(driver.focusedName(), rowName("media"));
}

TEST_F(Inspector, EscapeClosesItWhereverTheKeyboardIs) {
    driver.click(row(3));
    ASSERT_TRUE(isOpen());
    driver.key(Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
}

TEST_F(Inspector, ClosedFromOutsideItLeavesTheKeyboardToTheScreen) {
    driver.tabTo(rowName("library"), QAccessible::Button);
    driver.key(Qt::Key_Return);
    driver.click(driver.items("VolumeHeader").value(0));
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(driver.focusedName(), rowName("library"));
}

TEST_F(Inspector, IsAsWideAsItWantsBetweenItsBounds) {
    driver.click(row(3));
    EXPECT_EQ(column()->width(), 380);
    const QPoint edge(static_cast<int>(column()->mapToScene({}).x()), 300);
    const auto drag = [&](int to) {
        const int from = static_cast<int>(column()->mapToScene({}).x());
        QTest::mousePress(driver.window(), Qt::LeftButton, {}, {from, edge.y()});
        QTest::mouseMove(driver.window(), {to, edge.y()});
        QTest::mouseRelease(driver.window(), Qt::LeftButton, {}, {to, edge.y()});
        driver.stage.settle();
    };
    drag(edge.x() - 20);
    EXPECT_EQ(column()->width(), 400);
    drag(0);
    EXPECT_EQ(column()->width(), 420);
    drag(1090);
    EXPECT_EQ(column()->width(), 320);
}

TEST_F(Inspector, LeavesTheScreenRoomInANarrowWindow) {
    driver.window()->resize(900, 600);
    driver.click(row(3));
    EXPECT_EQ(column()->width(), 320);
    EXPECT_TRUE(driver.textFaults().isEmpty()) << driver.textFaults().join(QLatin1Char('\n')).toStdString();
}

TEST_F(Inspector, SlidesInAndOutUnlessMotionIsReduced) {
    driver.stage.window.theme().setReducedMotion(false);
    driver.click(row(3));
    QElapsedTimer waited;
    waited.start();
    bool wasOnTheWay = false;
    QQuickItem* sliding = driver.item("StorageInspectorView");
    const auto left = [&] { return sliding->x(); };
    const double wanted = sliding->parentItem()->width() - sliding->width();
    while (left() != wanted && waited.elapsed() < 5000) {
        wasOnTheWay = wasOnTheWay || left() > wanted;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 2);
    }
    EXPECT_EQ(left(), wanted);
    driver.stage.homeScreen.clearSelection();
    driver.stage.homeScreen.refresh();
    QCoreApplication::processEvents(QEventLoop::AllEvents, 2);
    ASSERT_TRUE(isOpen()) << "still on its way out";
    EXPECT_EQ(driver.stage.homeScreen.inspectorTitle(), text("home.storage.bucket.library"));
    driver.waitFor([this] { return !isOpen(); });
    EXPECT_TRUE(wasOnTheWay);
}

TEST_F(Inspector, ReviewInCleanupLeadsToTheBucketsFirstCategory) {
    driver.click(row(3));
    driver.press(QAccessible::Button, text("home.storage.reviewInCleanup"));
    EXPECT_EQ(driver.stage.shell.selection(), "cleanup");
    EXPECT_FALSE(home().selectedBucketID->has_value());
    EXPECT_EQ(driver.item("QQuickListView")->property("currentIndex").toInt(),
              driver.stage.cleanup.list()->rowOfGroup(*driver.stage.model->firstGroupIDOfCategory("caches")));
    driver.stage.shell.setSelection(QStringLiteral("home"));
    driver.stage.settle();
    EXPECT_FALSE(isOpen());
}

TEST_F(Inspector, IsNotShownOnTheCleanupScreenAndStandsAgainOnHome) {
    driver.click(row(3));
    driver.stage.shell.setSelection(QStringLiteral("cleanup"));
    driver.stage.settle();
    EXPECT_FALSE(isOpen());
    driver.key(Qt::Key_Escape);
    EXPECT_EQ(*home().selectedBucketID, "library") << "not on screen, so nothing to close";
    driver.stage.shell.setSelection(QStringLiteral("home"));
    driver.stage.settle();
    EXPECT_TRUE(isOpen());
}

} // namespace
} // namespace vesko
