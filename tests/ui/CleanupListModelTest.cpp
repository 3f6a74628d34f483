#include "ui/CleanupListModel.h"
#include "base/ByteFormat.h"
#include "base/StringCatalog.h"
#include "core/GroupBuilders.h"
#include "core/ProbeCatalog.h"
#include "ui/RowMirror.h"
#include "ui/ScreenStage.h"
#include <QAbstractItemModelTester>
#include <QElapsedTimer>
#include <QThread>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace vesko {
namespace {

using namespace testing;

std::string title(const CleanupListModel& list, int row) {
    return list.data(list.index(row), CleanupListModel::TitleRole).toString().toStdString();
}
TriState check(const CleanupListModel& list, int row) {
    return static_cast<TriState>(list.data(list.index(row), CleanupListModel::CheckRole).toInt());
}
bool checkable(const CleanupListModel& list, int row) {
    return list.data(list.index(row), CleanupListModel::CheckableRole).toBool();
}

class CleanupList : public ::testing::Test {
protected:
    void show(std::vector<CleanupGroup> groups) {
        showGroups(*stage.model, std::move(groups));
        stage.cleanup.refresh();
    }
    int row(std::string_view groupID) const { return list.rowOfGroup(groupID); }

    ScreenStage stage;
    CleanupListModel& list = *stage.cleanup.list();
};

TEST_F(CleanupList, BandsStandInTheirOrderWithTheirGroupsBeneath) {
    show({group("trash", {item("/t/1", 5'000'000)}), group("cache.npm", {item("/n", 9'000'000)}),
          group("cache.pip", {item("/p", 3'000'000)})});
    ASSERT_EQ(list.rowCount(), 5);
    EXPECT_EQ(title(list, 0), localized("section.system"));
    EXPECT_EQ(title(list, 1), stage.model->displayTitle((*stage.model->groups)[1]));
    EXPECT_EQ(title(list, 2), localized("section.caches"));
    EXPECT_EQ(list.kind(2), CleanupListModel::Band);
    EXPECT_EQ(list.kind(3), CleanupListModel::Group);
    EXPECT_EQ(row("cache.npm"), 3);
    EXPECT_EQ(row("cache.pip"), 4);
    EXPECT_EQ(list.data(list.index(2), CleanupListModel::SizeRole).toString().toStdString(),
              formatBytes(12'000'000));
}

TEST_F(CleanupList, ExpandingShowsTheItemsInListOrderAndCollapsingTakesThemAway) {
    show({group("trash", {item("/t/big", 9'000'000), item("/t/small", 1'000'000)})});
    const int at = row("trash");
    list.setExpanded(at, true);
    ASSERT_EQ(list.rowCount(), 4);
    EXPECT_EQ(list.kind(at + 1), CleanupListModel::Item);
    EXPECT_EQ(list.data(list.index(at + 1), CleanupListModel::PathRole).toString(), "/t/big");
    EXPECT_EQ(list.headerRow(at + 2), at);
    list.setExpanded(at, false);
    EXPECT_EQ(list.rowCount(), 2);
}

TEST_F(CleanupList, AnItemsBoxAsksTheModelAndShowsWhatItSays) {
    show({group("cache.cargo", {item("/a", 9'000'000), item("/b", 1'000'000)})});
    const int at = row("cache.cargo");
    list.setExpanded(at, true);
    EXPECT_EQ(check(list, at), TriState::on);
    stage.cleanup.toggle(at + 1);
    stage.settle();
    EXPECT_EQ(check(list, at + 1), TriState::off);
    EXPECT_EQ(check(list, at), TriState::mixed);
    EXPECT_EQ(check(list, 0), TriState::mixed);
    EXPECT_TRUE(stage.model->userOverriddenIDs->contains(FileURL("/a")));
}

TEST_F(CleanupList, AMixedGroupTurnsAllOnAndOnlyAFullOneClears) {
    show({group("cache.cargo", {item("/a", 9'000'000), item("/b", 1'000'000)})});
    const int at = row("cache.cargo");
    stage.model->setSelected(false, item("/a", 9'000'000));
    stage.settle();
    ASSERT_EQ(check(list, at), TriState::mixed);
    stage.cleanup.toggle(at);
    stage.settle();
    EXPECT_EQ(check(list, at), TriState::on);
    stage.cleanup.toggle(at);
    stage.settle();
    EXPECT_EQ(check(list, at), TriState::off);
}

TEST_F(CleanupList, ABandsBoxCountsGroupsThatASearchHides) {
    show({group("cache.npm", {item("/n", 9'000'000)}), group("cache.pip", {item("/p", 3'000'000)})});
    stage.model->searchText = std::string("npm");
    stage.model->setSelected(false, item("/p", 3'000'000));
    stage.settle();
    ASSERT_EQ(list.rowCount(), 2);
    EXPECT_EQ(check(list, 0), TriState::mixed);
    stage.cleanup.toggle(0);
    stage.settle();
    EXPECT_TRUE(stage.model->selectedItemIDs->contains(FileURL("/p")));
}

TEST_F(CleanupList, WhatCantBeDeletedHasADisabledBoxAlsoWhenItsGroupIsToggled) {
    show({group("cache.cargo", {item("/a", 9'000'000), item("/image", 4'000'000, "docker:unsupported")})});
    const int at = row("cache.cargo");
    list.setExpanded(at, true);
    EXPECT_TRUE(checkable(list, at + 1));
    EXPECT_FALSE(checkable(list, at + 2));
    stage.cleanup.toggle(at); // off
    stage.cleanup.toggle(at); // on
    stage.cleanup.toggle(at + 2);
    stage.settle();
    EXPECT_EQ(check(list, at), TriState::on);
    EXPECT_EQ(check(list, at + 2), TriState::off);
    EXPECT_FALSE(checkable(list, at + 2));
    EXPECT_FALSE(stage.model->selectedItemIDs->contains(FileURL("/image")));
}

TEST_F(CleanupList, AGroupOfNothingElseHasADisabledBox) {
    show({group("cache.cargo", {item("/image", 4'000'000, "docker:unsupported")})});
    EXPECT_FALSE(checkable(list, row("cache.cargo")));
    EXPECT_FALSE(checkable(list, 0));
}

TEST_F(CleanupList, ToggleDoesNothingWhileADeletionRuns) {
    show({group("cache.npm", {item("/n", 9'000'000)})});
    stage.model->phase = CleanupPhase::cleaning();
    stage.settle();
    stage.cleanup.toggle(row("cache.npm"));
    stage.settle();
    EXPECT_EQ(check(list, row("cache.npm")), TriState::on);
}

TEST_F(CleanupList, AGroupThatAScanFindsAgainIsStillExpanded) {
    const auto groups = std::vector{group("cache.cargo", {item("/a", 9'000'000), item("/b", 1'000'000)})};
    show(groups);
    list.setExpanded(row("cache.cargo"), true);
    stage.model->groups = std::vector<CleanupGroup>();
    stage.cleanup.refresh();
    ASSERT_EQ(list.rowCount(), 0);
    show(groups);
    EXPECT_EQ(list.rowCount(), 4);
}

TEST_F(CleanupList, AnUpdateMovesAGroupInsteadOfBuildingItAnew) {
    show({group("cache.npm", {item("/n", 9'000'000)}), group("cache.pip", {item("/p", 3'000'000)})});
    int moved = 0;
    int removed = 0;
    int reset = 0;
    QObject::connect(&list, &QAbstractItemModel::rowsMoved, &list, [&] { ++moved; });
    QObject::connect(&list, &QAbstractItemModel::rowsRemoved, &list, [&] { ++removed; });
    QObject::connect(&list, &QAbstractItemModel::modelReset, &list, [&] { ++reset; });
    show({group("cache.npm", {item("/n", 9'000'000)}), group("cache.pip", {item("/p", 30'000'000)})});
    EXPECT_EQ(row("cache.pip"), 1);
    EXPECT_EQ(moved, 1);
    EXPECT_EQ(removed, 0);
    EXPECT_EQ(reset, 0);
}

TEST_F(CleanupList, TheBandsOfARowAreFound) {
    show({group("trash", {item("/t", 5'000'000)}), group("cache.npm", {item("/n", 9'000'000)})});
    EXPECT_EQ(list.bandRow(1), 0);
    EXPECT_EQ(list.bandRow(3), 2);
    EXPECT_EQ(list.nextBandRow(1), 2);
    EXPECT_EQ(list.nextBandRow(3), -1);
    EXPECT_EQ(list.bandRow(-1), -1);
    EXPECT_EQ(list.bandRow(99), -1);
}

TEST_F(CleanupList, ANameThatIsNoUtf8IsShownEscapedAndRevealedByItsBytes) {
    const std::string raw = std::string("/t/na\xFFme");
    show({group("trash", {item(raw, 5'000'000), item("/t/other", 4'000'000)})});
    list.setExpanded(1, true);
    EXPECT_EQ(list.data(list.index(2), CleanupListModel::PathRole).toString(), "/t/na\\xFFme");
    stage.cleanup.reveal(2);
    ASSERT_EQ(stage.files->revealed.size(), 1u);
    EXPECT_EQ(stage.files->revealed[0], FileURL(raw));
}

TEST_F(CleanupList, TextsFollowTheLanguage) {
    show({group("trash", {item("/t", 5'000'000)})});
    setCurrentLanguage(Language::portuguese);
    stage.cleanup.languageChanged();
    EXPECT_EQ(title(list, 0), catalogText("section.system", Language::portuguese));
}

TEST_F(CleanupList, TheVerdictOfAGroupOfManyItemsComesWithinAFewTurns) {
    std::vector<ScannableItem> items;
    for (int i = 0; i < 20'000; ++i) items.push_back(item("/many/" + std::to_string(i), 1'000'000));
    show({group("cache.npm", items)});
    const int at = row("cache.npm");
    const auto safety = [&] {
        return static_cast<Safety>(list.data(list.index(at), CleanupListModel::SafetyRole).toInt());
    };
    EXPECT_EQ(safety(), Safety::seguro);
    Enrichment risky;
    risky.friendlyName = "a";
    risky.safety = Safety::risco;
    risky.reason = "It may be lost.";
    stage.model->enrichmentStore().clear();
    stage.model->enrichmentStore().apply({{items.back().enrichmentKey, risky}});
    stage.cleanup.refresh();
    QElapsedTimer waited;
    for (waited.start(); safety() != Safety::risco && waited.elapsed() < 10'000;) {
        QThread::msleep(2);
        stage.settle();
    }
    EXPECT_EQ(safety(), stage.model->resolveGroup((*stage.model->groups)[0]).safety);
    EXPECT_EQ(safety(), Safety::risco);
    EXPECT_EQ(list.data(list.index(at), CleanupListModel::DetailRole).toString(), "It may be lost.");
}

CleanupGroup randomGroup() {
    static const std::vector<std::string> ids{"trash",           "logs.stale",     "cache.npm",
                                              "cache.pip",       "cache.uv",       "cache.bun",
                                              "downloads.stale", "xcode.archives", "cache.go"};
    const std::string id = *rc::gen::elementOf(ids);
    const auto names = *rc::gen::unique<std::vector<int>>(rc::gen::inRange(0, 12));
    std::vector<ScannableItem> items;
    for (const int name : names) {
        const bool unsupported = *rc::gen::inRange(0, 9) == 0;
        items.push_back(item("/" + id + "/" + std::to_string(name), *rc::gen::inRange(0, 5) * 1'000'000,
                             unsupported ? "docker:unsupported" : ""));
    }
    CleanupGroup made = group("trash", {item("/x", 1)});
    const GroupMetadata& metadata = probeMetadataByID().at(id);
    made.id = id;
    made.title = probeTitle(id);
    made.section = metadata.section;
    made.baselineSafety = metadata.baselineSafety;
    made.items = ItemList(items);
    return made;
}

void changeSomething(ScreenStage& stage) {
    CleanupViewModel& model = *stage.model;
    CleanupListModel& list = *stage.cleanup.list();
    const int what = *rc::gen::inRange(0, 8);
    const int row = *rc::gen::inRange(0, std::max(1, list.rowCount()));
    if (what == 0) {
        model.groups = *rc::gen::container<std::vector<CleanupGroup>>(rc::gen::exec(randomGroup));
    } else if (what == 1) {
        model.groups.modify([&](std::vector<CleanupGroup>& groups) { groups.push_back(randomGroup()); });
    } else if (what == 2) {
        model.groups.modify(
            [&](std::vector<CleanupGroup>& groups) { std::reverse(groups.begin(), groups.end()); });
    } else if (what == 3) {
        list.setExpanded(row, *rc::gen::arbitrary<bool>());
    } else if (what == 4) {
        stage.cleanup.toggle(row);
    } else if (what == 5) {
        model.searchText = *rc::gen::element(std::string(), std::string("cache"), std::string("a"));
    } else if (what == 6) {
        model.groups.modify([&](std::vector<CleanupGroup>& groups) {
            for (CleanupGroup& each : groups) {
                if (each.items.empty()) continue;
                std::vector<ScannableItem> kept(each.items.begin() + 1, each.items.end());
                each.items = ItemList(std::move(kept));
            }
        });
    } else {
        model.groups.modify([&](std::vector<CleanupGroup>& groups) {
            for (CleanupGroup& each : groups) {
                std::vector<ScannableItem> turned(each.items.begin(), each.items.end());
                std::rotate(turned.begin(), turned.begin() + static_cast<std::ptrdiff_t>(turned.size() / 2),
                            turned.end());
                each.items = ItemList(std::move(turned));
            }
        });
    }
}

// Whoever follows the signals alone holds the same rows as the model, and the model holds what a new one
// built from the same state would.
RC_GTEST_PROP(CleanupListProperty, FollowingTheSignalsGivesTheRowsOfAPlainRebuild, ()) {
    ScreenStage stage;
    CleanupListModel& list = *stage.cleanup.list();
    QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::Warning);
    RowMirror mirror(list);
    const int steps = *rc::gen::inRange(1, 12);
    for (int step = 0; step < steps; ++step) {
        changeSomething(stage);
        stage.cleanup.refresh();
        RC_ASSERT(mirror.rows() == allRows(list));
        CleanupListModel rebuilt(stage.model);
        rebuilt.refresh();
        for (int row = 0; row < list.rowCount(); ++row) {
            if (!list.isExpanded(row)) continue;
            rebuilt.setExpanded(row, true);
        }
        RC_ASSERT(allRows(rebuilt) == allRows(list));
    }
    RC_ASSERT(mirror.resets() == 0);
}

} // namespace
} // namespace vesko
