// The main window, its sidebar, and what stands in its place without access to the files.
#include "ui/AWindow.h"
#include <QQuickItem>

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

TEST_F(AWindow, SpaceReturnAndEnterActOnWhateverHasTheKeyboard) {
    driver.show();
    showGroups(model(), {group("trash", {item("/n/a", 500'000'000)}),
                         group("cache.npm", {item("/n/b", 700'000'000)})});
    driver.stage.settle();
    const auto actOn = [&](QAccessible::Role role, const QString& name, Qt::Key key) {
        QAccessibleInterface* found = driver.find(role, name);
        ASSERT_TRUE(found) << name.toStdString();
        found->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
        driver.key(key);
    };
    WindowModel& shell = driver.stage.shell;
    int scrolled = 0;
    const auto connection = QObject::connect(&driver.stage.cleanup, &CleanupScreen::scrollRequested, &shell,
                                             [&scrolled] { ++scrolled; });
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        shell.setSelection(QStringLiteral("home"));
        driver.stage.settle();
        actOn(QAccessible::Button, text("home.shortcut.reviewCleanup"), key);
        EXPECT_EQ(shell.selection(), "cleanup") << "a shortcut, by " << key;
        shell.setSelection(QStringLiteral("cleanup"));
        driver.stage.settle();
        actOn(QAccessible::PageTab, text("sidebar.home"), key);
        EXPECT_EQ(shell.selection(), "home") << "an entry of the sidebar, by " << key;
        shell.setSelection(QStringLiteral("cleanup"));
        model().reviewMessage = std::optional<std::string>("One item was put where it belongs.");
        driver.stage.settle();
        actOn(QAccessible::Button, text("a11y.dismiss"), key);
        EXPECT_FALSE(model().reviewMessage->has_value()) << "a button that is a picture, by " << key;
        scrolled = 0;
        driver.items("LegendChip").value(0)->forceActiveFocus();
        driver.key(key);
        EXPECT_EQ(scrolled, 1) << "an entry of the legend, by " << key;
    }
    QObject::disconnect(connection);
}

} // namespace
} // namespace vesko
