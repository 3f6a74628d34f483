// The list of the Cleanup screen and what stands above it, by keyboard, pointer and assistive tools.
#include "ui/AWindow.h"
#include <QQuickItem>
#include <filesystem>

namespace vesko {
namespace {

using namespace testing;

TEST_F(AWindow, TheWholeCleanupWorksByKeyboardAlone) {
    const FileURL victim = driver.stage.home.file("victim/data", "12345");
    driver.show();
    driver.key(Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(driver.stage.shell.selection(), "cleanup");
    showGroups(model(),
               {group("trash", {item(victim.parent().path(), 4'000'000), item("/none/other", 2'000'000)})});
    driver.stage.settle();
    driver.tabTo(text("sidebar.cleanup"), QAccessible::List);
    driver.key(Qt::Key_Home);
    driver.key(Qt::Key_Down);  // the group
    driver.key(Qt::Key_Right); // expands
    EXPECT_EQ(list().rowCount(), 4);
    driver.key(Qt::Key_Down); // its first item
    driver.key(Qt::Key_Space);
    EXPECT_EQ(*model().selectedItemIDs, URLSet{victim.parent()});
    driver.key(Qt::Key_Left); // back to the group
    driver.key(Qt::Key_Left); // collapses
    EXPECT_EQ(list().rowCount(), 2);
    driver.tabTo(driver.stage.cleanup.recoverLabel(), QAccessible::Button);
    driver.key(Qt::Key_Space);
    driver.type(text("delete.confirm.word"));
    driver.key(Qt::Key_Return);
    driver.waitFor([&] { return model().cleanupMessage->has_value(); });
    EXPECT_FALSE(std::filesystem::exists(victim.path()));
}

TEST_F(AWindow, EveryControlOfTheListIsReachedByTab) {
    showList();
    driver.key(Qt::Key_F, Qt::ControlModifier);
    QSet<QString> reached;
    for (int i = 0; i < 60; ++i) {
        driver.key(Qt::Key_Tab);
        reached.insert(driver.focusedName());
    }
    for (const QString& name : {text("cleanup.scan"), text("a11y.search"), text("sidebar.home"),
                                text("sidebar.cleanup"), driver.stage.cleanup.recoverLabel()}) {
        EXPECT_TRUE(reached.contains(name)) << name.toStdString();
    }
}

TEST_F(AWindow, TheSearchTakesTheKeyboardFiltersAndEscapeClearsIt) {
    showList();
    const int before = list().rowCount();
    driver.key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(driver.focusedName(), text("a11y.search"));
    driver.type(QStringLiteral("npm"));
    EXPECT_EQ(*model().searchText, "npm");
    EXPECT_EQ(list().rowCount(), 2);
    driver.key(Qt::Key_Escape);
    EXPECT_EQ(*model().searchText, "");
    EXPECT_EQ(list().rowCount(), before);
}

TEST_F(AWindow, ASearchWithoutHitsShowsNoResultsAndTheListIsGone) {
    showList();
    model().searchText = std::string("zzzz");
    driver.stage.settle();
    EXPECT_TRUE(driver.find(QAccessible::Heading, text("empty.noResults.title")));
    EXPECT_FALSE(driver.find(QAccessible::Grouping, text("a11y.storageBar")));
}

TEST_F(AWindow, ABoxNeverFlipsItself) {
    showList();
    model().phase = CleanupPhase::cleaning(); // refuses every change of the selection
    const QString name =
        QString::fromStdString(localized("a11y.selectGroup %@", model().displayTitle((*model().groups)[0])));
    model().phase = CleanupPhase::idle();
    driver.stage.settle();
    driver.stage.cleanup.scrollToSection(QStringLiteral("development"));
    driver.stage.settle();
    ASSERT_TRUE(driver.find(QAccessible::CheckBox, name));
    ASSERT_TRUE(driver.isChecked(name));
    model().phase = CleanupPhase::cleaning();
    driver.press(QAccessible::CheckBox, name);
    EXPECT_TRUE(driver.isChecked(name));
}

TEST_F(AWindow, AnUnsupportedObjectHasADisabledBox) {
    driver.show();
    driver.stage.shell.setSelection(QStringLiteral("cleanup"));
    showGroups(model(), {group("cache.cargo", {item("/a/one", 9'000'000),
                                               item("/a/two", 4'000'000, "docker:unsupported")})});
    driver.stage.settle();
    list().setExpanded(1, true);
    driver.stage.settle();
    const auto boxName = [&](int row) {
        return QString::fromStdString(
            localized("a11y.selectItem %@",
                      list().data(list().index(row), CleanupListModel::TitleRole).toString().toStdString()));
    };
    int disabled = 0;
    for (QAccessibleInterface* each : driver.all(QAccessible::CheckBox))
        disabled += each->state().disabled ? 1 : 0;
    EXPECT_EQ(disabled, 1) << boxName(3).toStdString();
    driver.press(
        QAccessible::CheckBox,
        QString::fromStdString(localized("a11y.selectGroup %@", model().displayTitle((*model().groups)[0]))));
    driver.press(
        QAccessible::CheckBox,
        QString::fromStdString(localized("a11y.selectGroup %@", model().displayTitle((*model().groups)[0]))));
    disabled = 0;
    for (QAccessibleInterface* each : driver.all(QAccessible::CheckBox))
        disabled += each->state().disabled ? 1 : 0;
    EXPECT_EQ(disabled, 1);
    EXPECT_FALSE(model().selectedItemIDs->contains(FileURL("/a/two")));
}

TEST_F(AWindow, ReviewMessageStaysUntilItsButtonIsPressed) {
    showList();
    model().reviewMessage = std::optional<std::string>("One item was put where it belongs.");
    driver.stage.settle();
    EXPECT_TRUE(driver.find(QAccessible::AlertMessage, QStringLiteral("One item was put where it belongs.")));
    driver.press(QAccessible::Button, text("a11y.dismiss"));
    EXPECT_FALSE(model().reviewMessage->has_value());
    EXPECT_FALSE(
        driver.find(QAccessible::AlertMessage, QStringLiteral("One item was put where it belongs.")));
}

TEST_F(AWindow, TheReviewsMarkStandsWhereTheReviewAddedSomethingAndNowhereElse) {
    showTwoGroups();
    const QString mark = text("a11y.aiDiscovered");
    EXPECT_TRUE(driver.all(QAccessible::Graphic).isEmpty());
    model().aiDiscoveredURLs = URLSet{FileURL("/n/b")};
    driver.stage.settle();
    // Of a collapsed group its row, of an expanded one that item's row too.
    EXPECT_EQ(driver.all(QAccessible::Graphic).size(), 1);
    list().setExpanded(list().rowOfGroup("trash"), true);
    driver.stage.settle();
    const QList<QAccessibleInterface*> marks = driver.all(QAccessible::Graphic);
    ASSERT_EQ(marks.size(), 2);
    for (const QAccessibleInterface* each : marks) EXPECT_EQ(each->text(QAccessible::Name), mark);
    model().aiDiscoveredURLs = URLSet{};
    driver.stage.settle();
    EXPECT_TRUE(driver.all(QAccessible::Graphic).isEmpty());
}

TEST_F(AWindow, WhileVerdictsAreMadeTheBadgesSayItAndTheButtonWaits) {
    showTwoGroups();
    const QString recover = driver.stage.cleanup.recoverLabel();
    ASSERT_FALSE(driver.isDisabled(QAccessible::Button, recover));
    const auto row = [](const char* group, const char* verdict, const char* size) {
        return QString::fromStdString(localized("a11y.group %1$@ %2$@ %3$@",
                                                localized("probe." + std::string(group) + ".title"),
                                                localized(verdict), size));
    };
    model().isEnriching = true;
    model().analyzingKeys = std::unordered_set<EnrichmentKey>{{"url:/n/b"}};
    driver.stage.settle();
    EXPECT_TRUE(driver.isDisabled(QAccessible::Button, recover));
    EXPECT_TRUE(driver.find(QAccessible::StaticText, text("action.waitingAI")));
    EXPECT_TRUE(
        driver.find(QAccessible::StaticText, QString::fromStdString(localized("chip.aiRefining %lld", 1))));
    EXPECT_TRUE(driver.find(QAccessible::Button, row("trash", "safety.analyzing", "800 MB")));
    EXPECT_TRUE(driver.find(QAccessible::Button, row("cache.npm", "safety.seguro", "700 MB")));
    model().analyzingKeys = std::unordered_set<EnrichmentKey>();
    model().isEnriching = false;
    driver.stage.settle();
    EXPECT_FALSE(driver.isDisabled(QAccessible::Button, recover));
    EXPECT_TRUE(driver.find(QAccessible::StaticText, text("action.permanentWarning")));
    EXPECT_TRUE(driver.find(QAccessible::Button, row("trash", "safety.revisar", "800 MB")));
}

TEST_F(AWindow, TheMessageAfterDeletingEverythingStandsAboveTheEmptyState) {
    driver.show();
    driver.stage.shell.setSelection(QStringLiteral("cleanup"));
    showGroups(model(), {});
    model().cleanupMessage = std::optional<std::string>("40 items deleted.");
    driver.stage.settle();
    EXPECT_TRUE(driver.find(QAccessible::AlertMessage, QStringLiteral("40 items deleted.")));
    EXPECT_TRUE(driver.find(QAccessible::Heading, text("empty.noResults.title")));
}

TEST_F(AWindow, AScanIsCancelledFromItsBanner) {
    driver.show();
    driver.stage.shell.setSelection(QStringLiteral("cleanup"));
    model().phase = CleanupPhase::scanning();
    driver.stage.settle();
    EXPECT_TRUE(driver.isDisabled(QAccessible::Button, text("cleanup.scan")));
    model().scanProgress = std::optional(ScanProgress{"npm", 1, 1, 1, 0.1});
    driver.stage.settle();
    driver.press(QAccessible::Button, text("action.cancel"));
    EXPECT_EQ(model().phase->kind, CleanupPhase::Kind::idle);
}

TEST_F(AWindow, TheListKeepsItsPlaceWhileAScanUpdatesIt) {
    showList();
    driver.stage.window.theme().setReducedMotion(true);
    driver.stage.cleanup.scrollToSection(QStringLiteral("downloads"));
    driver.stage.settle();
    QQuickItem* view = driver.item("QQuickListView");
    ASSERT_TRUE(view);
    const double before = view->property("contentY").toDouble();
    ASSERT_GT(before, 100);
    model().indexedBytes = std::int64_t{1'000'000};
    std::vector<CleanupGroup> groups = *model().groups;
    groups.push_back(group("cache.yarn", {item("/yarn", 1'000'000)}));
    showGroups(model(), groups);
    driver.stage.settle();
    const double after = view->property("contentY").toDouble();
    EXPECT_NEAR(after, before, 70) << "at most the row that came above";
}

TEST_F(AWindow, TheMenuOfARowRevealsAndExpands) {
    showList();
    driver.stage.window.theme().setReducedMotion(true);
    driver.tabTo(text("sidebar.cleanup"), QAccessible::List);
    driver.key(Qt::Key_Home);
    driver.key(Qt::Key_Down);
    driver.key(Qt::Key_Menu);
    EXPECT_TRUE(driver.find(QAccessible::MenuItem, text("menu.expand")));
    driver.press(QAccessible::MenuItem, text("menu.expand"));
    EXPECT_TRUE(list().isExpanded(1));
    driver.key(Qt::Key_Down);
    driver.key(Qt::Key_Menu);
    driver.key(Qt::Key_Return); // the first entry
    EXPECT_EQ(driver.stage.files->revealed.size(), 1u);
    EXPECT_EQ(driver.stage.files->revealed[0], *list().url(2));
}

} // namespace
} // namespace vesko
