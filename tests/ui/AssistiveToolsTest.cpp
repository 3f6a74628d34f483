// What assistive tools hear of the real window: what is disabled, and the rows in the order of the screen.
#include "base/StringCatalog.h"
#include "ui/WindowDriver.h"
#include <QQuickItem>
#include <algorithm>
#include <gtest/gtest.h>

namespace vesko {
namespace {

using namespace testing;

QString text(const char* key) { return QString::fromStdString(localized(key)); }

class AssistiveTools : public ::testing::Test {
protected:
    void show(std::vector<CleanupGroup> groups) {
        driver.show();
        driver.stage.shell.setSelection(QStringLiteral("cleanup"));
        showGroups(*driver.stage.model, std::move(groups));
        driver.stage.settle();
    }
    CleanupViewModel& model() { return *driver.stage.model; }
    CleanupListModel& list() { return *driver.stage.cleanup.list(); }

    void expandAndShow(std::string_view groupID) {
        list().setExpanded(list().rowOfGroup(groupID), true);
        driver.stage.settle();
        Q_EMIT driver.stage.cleanup.scrollRequested(list().rowOfGroup(groupID));
        driver.stage.settle();
    }
    void scrollTo(double fraction) {
        QQuickItem* view = driver.item("QQuickListView");
        const double room = view->property("contentHeight").toDouble() - view->height();
        view->setProperty("contentY", view->property("originY").toDouble() + room * fraction);
        driver.stage.settle();
    }

    /// The bands, groups and items that are told of and to be seen, by the title that their names begin with.
    QString spokenRows() {
        QAccessibleInterface* view = driver.find(QAccessible::List, text("sidebar.cleanup"));
        QStringList rows;
        for (int i = 0; view && i < view->childCount(); ++i) {
            QAccessibleInterface* row = view->child(i);
            const bool isRow = row->role() == QAccessible::ListItem || row->role() == QAccessible::Heading ||
                               (row->role() == QAccessible::Button && row->childCount() > 0);
            if (isRow && row->rect().intersects(view->rect()))
                rows.append(beginning(row->text(QAccessible::Name)));
        }
        return rows.join(QStringLiteral(" | "));
    }
    /// The rows of the list's model that are to be seen, in its order.
    QString shownRows() {
        QQuickItem* view = driver.item("QQuickListView");
        QStringList rows;
        for (int row = 0; row < list().rowCount(); ++row) {
            QQuickItem* shown = nullptr;
            QMetaObject::invokeMethod(view, "itemAtIndex", Q_RETURN_ARG(QQuickItem*, shown), Q_ARG(int, row));
            if (!shown) continue;
            const double top = shown->mapToItem(view, QPointF()).y();
            if (top + shown->height() <= 0 || top >= view->height()) continue;
            rows.append(beginning(list().data(list().index(row), CleanupListModel::TitleRole).toString()));
        }
        return rows.join(QStringLiteral(" | "));
    }
    static QString beginning(const QString& name) { return name.section(QLatin1Char(','), 0, 0); }
    void expectScreenOrder(const char* when) {
        EXPECT_NE(shownRows(), QString()) << when;
        EXPECT_EQ(spokenRows().toStdString(), shownRows().toStdString()) << when;
    }

    WindowDriver driver;
};

// Order.

TEST_F(AssistiveTools, HearTheRowsInTheOrderOfTheScreenWhateverTheListDid) {
    show(sampleGroups());
    expectScreenOrder("at first");
    list().setExpanded(list().rowOfGroup("cache.cargo"), true);
    driver.stage.settle();
    expectScreenOrder("after a group in the middle was expanded");
    expandAndShow("xcode.derivedData");
    expectScreenOrder("after the list went to another group");
    for (const double place : {1.0, 0.6, 0.3, 0.0, 0.5}) {
        scrollTo(place);
        expectScreenOrder("after scrolling");
    }
    model().searchText = std::string("cache");
    driver.stage.settle();
    expectScreenOrder("in a search");
    model().searchText = std::string();
    driver.stage.settle();
    expectScreenOrder("after the search");
    list().setExpanded(list().rowOfGroup("cache.cargo"), false);
    driver.stage.settle();
    expectScreenOrder("after the group was collapsed");
}

TEST_F(AssistiveTools, HearTheRowsInTheOrderOfTheScreenAfterGroupsChangedPlaces) {
    std::vector<CleanupGroup> groups = sampleGroups();
    show(groups);
    groups[5] =
        group("xcode.archives", {item("/archives/2025-11-02", 54'000'000'000)}); // was the last of its band
    groups.push_back(group("cache.yarn", {item("/yarn", 9'000'000'000)}));
    showGroups(model(), groups);
    driver.stage.settle();
    expectScreenOrder("after a scan");
}

TEST_F(AssistiveTools, HearOfTheHeldBandBeforeTheRowsBeneathIt) {
    show(sampleGroups());
    scrollTo(0.5);
    QAccessibleInterface* held = driver.all(QAccessible::Heading).at(1); // behind the program's own name
    QAccessibleInterface* view = driver.find(QAccessible::List, text("sidebar.cleanup"));
    ASSERT_NE(held->parent(), view);
    EXPECT_EQ(held->rect().top(), view->rect().top());
    EXPECT_LT(view->parent()->indexOfChild(held), view->parent()->indexOfChild(view));
}

// Enabled or not.

TEST_F(AssistiveTools, HearThatNothingSelectedLeavesNothingToDelete) {
    show({group("trash", {item("/a/one", 9'000'000)})});
    const auto recover = [this] {
        return driver.isDisabled(QAccessible::Button, driver.stage.cleanup.recoverLabel());
    };
    EXPECT_TRUE(recover());
    driver.stage.cleanup.toggle(1);
    driver.stage.settle();
    EXPECT_FALSE(recover());
    driver.stage.cleanup.toggle(1);
    driver.stage.settle();
    EXPECT_TRUE(recover());
}

TEST_F(AssistiveTools, HearThatEveryBoxIsDisabledWhileDeleting) {
    show(sampleGroups());
    expandAndShow("cache.cargo");
    const auto count = [this](bool disabled) {
        const auto boxes = driver.all(QAccessible::CheckBox);
        return std::count_if(boxes.begin(), boxes.end(),
                             [&](QAccessibleInterface* each) { return each->state().disabled == disabled; });
    };
    const auto boxes = count(false);
    ASSERT_GT(boxes, 5);
    ASSERT_EQ(count(true), 0);
    const QString toggles = QString::fromStdString(localized("section.deselectAll")) + ", Caches";
    ASSERT_FALSE(driver.isDisabled(QAccessible::Button, toggles));
    model().phase = CleanupPhase::cleaning();
    driver.stage.settle();
    EXPECT_EQ(count(false), 0);
    EXPECT_EQ(count(true), boxes);
    EXPECT_TRUE(driver.isDisabled(QAccessible::Button, toggles));
    EXPECT_TRUE(driver.isDisabled(QAccessible::Button, text("cleanup.scan")));
    // Looking at the list goes on.
    EXPECT_FALSE(driver.isDisabled(QAccessible::Button, text("a11y.revealInFinder")));
    model().phase = CleanupPhase::idle();
    driver.stage.settle();
    EXPECT_EQ(count(false), boxes);
}

TEST_F(AssistiveTools, ActOnAControlOnlyWhileItIsEnabled) {
    show({group("cache.npm", {item("/a/one", 9'000'000)})});
    const QString scan = text("cleanup.scan");
    model().phase = CleanupPhase::cleaning();
    driver.stage.settle();
    QAccessibleInterface* button = driver.find(QAccessible::Button, scan);
    ASSERT_TRUE(button);
    EXPECT_FALSE(button->state().focusable);
    button->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_FALSE(button->state().focused);
    model().phase = CleanupPhase::idle();
    driver.stage.settle();
    EXPECT_TRUE(button->state().focusable);
    button->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_TRUE(button->state().focused);
}

} // namespace
} // namespace vesko
