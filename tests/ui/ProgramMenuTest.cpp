// The menu at the foot of the sidebar.
#include "base/StringCatalog.h"
#include "ui/WindowDriver.h"
#include "ui/WindowModule.h"
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <gtest/gtest.h>

namespace vesko {
namespace {

using namespace testing;

class ProgramMenu : public ::testing::Test {
protected:
    static QString text(const char* key) { return QString::fromStdString(localized(key)); }
    QAccessibleInterface* entry(const char* key) { return driver.find(QAccessible::MenuItem, text(key)); }
    void openMenu() { driver.press(QAccessible::Button, text("sidebar.menu")); }
    QString highlighted() { return driver.focusedName(); }

    WindowDriver driver;
    ScreenStage& stage = driver.stage;
};

TEST_F(ProgramMenu, HasItsEntriesInOrder) {
    driver.show();
    EXPECT_TRUE(driver.all(QAccessible::MenuItem).isEmpty());
    openMenu();
    QStringList names;
    for (QAccessibleInterface* each : driver.all(QAccessible::MenuItem))
        names << each->text(QAccessible::Name);
    EXPECT_EQ(names, (QStringList{text("menu.about"), text("menu.checkForUpdates"), text("menu.settings"),
                                  text("menu.quit")}));
}

TEST_F(ProgramMenu, TheCheckForUpdatesIsDisabledWhileItCannotCheck) {
    driver.show();
    openMenu();
    EXPECT_FALSE(driver.isDisabled(QAccessible::MenuItem, text("menu.checkForUpdates")));
    stage.updater->set(false, std::nullopt);
    stage.settle();
    EXPECT_TRUE(driver.isDisabled(QAccessible::MenuItem, text("menu.checkForUpdates")));
    driver.press(QAccessible::MenuItem, text("menu.checkForUpdates"));
    EXPECT_EQ(stage.updater->checks, 0);
    EXPECT_TRUE(entry("menu.checkForUpdates")) << "the menu stays";
    stage.updater->set(true, std::nullopt);
    stage.settle();
    driver.press(QAccessible::MenuItem, text("menu.checkForUpdates"));
    EXPECT_EQ(stage.updater->checks, 1);
    EXPECT_EQ(stage.settings.tab(), "updates");
    EXPECT_TRUE(stage.settingsWindow());
}

TEST_F(ProgramMenu, LeadsToTheSettingsAndToTheInformation) {
    driver.show();
    openMenu();
    driver.press(QAccessible::MenuItem, text("menu.settings"));
    EXPECT_TRUE(stage.settingsWindow());
    EXPECT_EQ(stage.settings.tab(), "general");
    stage.settingsWindow()->close();
    stage.settle();
    EXPECT_FALSE(stage.settings.isOpen());
    openMenu();
    driver.press(QAccessible::MenuItem, text("menu.about"));
    EXPECT_TRUE(stage.settingsWindow());
    EXPECT_EQ(stage.settings.tab(), "about");
}

TEST_F(ProgramMenu, WorksByKeyboardAlone) {
    driver.show();
    stage.updater->set(false, std::nullopt);
    driver.tabTo(text("sidebar.menu"), QAccessible::Button);
    driver.key(Qt::Key_Space);
    EXPECT_EQ(highlighted(), text("menu.about"));
    driver.key(Qt::Key_Down);
    EXPECT_EQ(highlighted(), text("menu.settings")) << "what is disabled is passed over";
    driver.key(Qt::Key_Down);
    driver.key(Qt::Key_Down);
    EXPECT_EQ(highlighted(), text("menu.about"));
    driver.key(Qt::Key_Up);
    EXPECT_EQ(highlighted(), text("menu.quit"));
    driver.key(Qt::Key_Escape);
    EXPECT_TRUE(driver.all(QAccessible::MenuItem).isEmpty());
    EXPECT_EQ(driver.focusedName(), text("sidebar.menu"));
    driver.key(Qt::Key_Return);
    driver.key(Qt::Key_Down);
    driver.key(Qt::Key_Return);
    EXPECT_TRUE(stage.settings.isOpen());
}

TEST_F(ProgramMenu, QuitClosesTheMainWindow) {
    driver.show();
    openMenu();
    driver.press(QAccessible::MenuItem, text("menu.quit"));
    EXPECT_FALSE(stage.window.window()->isVisible());
}

TEST_F(ProgramMenu, ItsKeyQuitsFromTheMainWindow) {
    driver.show();
    driver.key(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(stage.window.window()->isVisible());
}

TEST_F(ProgramMenu, ADotTellsOfANewerVersion) {
    driver.show();
    const auto told = [this] {
        return driver.find(QAccessible::Button, text("sidebar.menu"))->text(QAccessible::Description);
    };
    EXPECT_EQ(told(), "");
    stage.updater->set(true, NewerVersion{"1.4", "", ""});
    stage.settle();
    EXPECT_EQ(told(), text("a11y.updateAvailable"));
}

TEST_F(ProgramMenu, TheSidebarsWidthFollowsItsModelWithinItsBounds) {
    driver.show();
    const QQuickItem* sidebar = driver.item("Sidebar_");
    ASSERT_TRUE(sidebar);
    EXPECT_EQ(sidebar->width(), 220);
    stage.shell.setSidebarWidth(1000);
    EXPECT_EQ(sidebar->width(), 260);
    stage.shell.setSidebarWidth(-1);
    EXPECT_EQ(sidebar->width(), 200);
}

TEST_F(ProgramMenu, TheMainWindowBeginsAsItIsTold) {
    ASSERT_TRUE(stage.window.show({{"width", 1000}, {"height", 700}, {"x", 70}, {"y", 50}}));
    stage.settle();
    EXPECT_EQ(driver.window()->geometry(), QRect(70, 50, 1000, 700));
    ScreenStage other;
    ASSERT_TRUE(other.window.show({{"visibility", QVariant::fromValue(QWindow::Maximized)}}));
    other.settle();
    EXPECT_EQ(other.window.window()->visibility(), QWindow::Maximized);
}

// The application menu of a system with a menu bar. It cannot be shown here, but every type and property of
// its file is looked up.

TEST(ApplicationMenu, ItsFileHoldsTogether) {
    QQmlEngine engine;
    useWindowModule(engine);
    const QQmlComponent file(&engine, QUrl(QStringLiteral("qrc:/qml/Vesko/Window/ApplicationMenu.qml")));
    if (file.errorString().contains("\"Qt.labs.platform\" is not installed"))
        GTEST_SKIP() << "the toolkit's module for menu bars is not installed";
    EXPECT_EQ(file.status(), QQmlComponent::Ready) << file.errorString().toStdString();
}

} // namespace
} // namespace vesko
