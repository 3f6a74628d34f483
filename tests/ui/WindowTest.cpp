// The main window, its sidebar, and what stands in its place without access to the files.
#include "ui/AWindow.h"

namespace vesko {
namespace {

using namespace testing;

TEST(AccessScreen, WithoutAccessItIsAllThereIsUntilTheButtonFindsTheGrant) {
    WindowDriver driver(false);
    driver.show();
    EXPECT_TRUE(driver.find(QAccessible::Heading, QString::fromStdString(localized("diskAccess.title"))));
    EXPECT_FALSE(driver.find(QAccessible::PageTab, QString::fromStdString(localized("sidebar.home"))));
    const QString check = QString::fromStdString(localized("diskAccess.alreadyGranted"));
    driver.press(QAccessible::Button, check);
    EXPECT_FALSE(driver.find(QAccessible::PageTab, QString::fromStdString(localized("sidebar.home"))));
    driver.stage.access = true;
    driver.press(QAccessible::Button, check);
    EXPECT_TRUE(driver.find(QAccessible::PageTab, QString::fromStdString(localized("sidebar.home"))));
    EXPECT_FALSE(driver.find(QAccessible::Heading, QString::fromStdString(localized("diskAccess.title"))));
}

TEST(AccessScreen, ItsFirstButtonOpensTheSettings) {
    WindowDriver driver(false);
    driver.show();
    driver.press(QAccessible::Button, QString::fromStdString(localized("diskAccess.linux.openFolder")));
    EXPECT_EQ(driver.stage.settingsOpened, 1);
}

TEST_F(AWindow, HasTheNameTheSizeAndTheSmallestSize) {
    driver.show();
    EXPECT_EQ(driver.window()->title(), text("app.name"));
    EXPECT_EQ(driver.window()->size(), QSize(1100, 760));
    EXPECT_EQ(driver.window()->minimumSize(), QSize(900, 600));
}

TEST_F(AWindow, NoSelectionShowsHome) {
    driver.show();
    driver.stage.shell.setSelection(QString());
    driver.stage.settle();
    EXPECT_TRUE(driver.find(QAccessible::Button, text("home.shortcut.reviewCleanup")));
}

TEST_F(AWindow, TheSidebarLeadsToItsScreens) {
    driver.show();
    driver.press(QAccessible::PageTab, text("sidebar.cleanup"));
    EXPECT_TRUE(driver.find(QAccessible::Button, text("cleanup.scan")));
    driver.press(QAccessible::PageTab, text("sidebar.home"));
    EXPECT_FALSE(driver.find(QAccessible::Button, text("cleanup.scan")));
}

TEST_F(AWindow, ADisabledShortcutTakesNoClicks) {
    driver.stage.model->phase = CleanupPhase::cleaning();
    driver.show();
    driver.press(QAccessible::Button, text("home.shortcut.scanNow"));
    EXPECT_EQ(model().phase->kind, CleanupPhase::Kind::cleaning);
    driver.press(QAccessible::Button, text("home.shortcut.reviewCleanup"));
    EXPECT_EQ(driver.stage.shell.selection(), "cleanup");
}

} // namespace
} // namespace vesko
