#include "ui/HomeListModel.h"
#include <QPersistentModelIndex>
#include <QSignalSpy>
#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace vesko {
namespace {

HomeRow row(const std::string& id, const std::string& amount = {}) {
    return {.id = id, .title = id, .detail = {}, .icon = {}, .amount = amount};
}

std::vector<std::string> ids(const HomeListModel& list) {
    std::vector<std::string> all;
    for (const HomeRow& each : list.rows()) all.push_back(each.id);
    return all;
}

TEST(HomeListModel, ARowThatFillsIsChangedInItsPlaceAndNothingElseIsTold) {
    HomeListModel list;
    list.take({row("a"), row("b"), row("c")});
    QSignalSpy inserted(&list, &HomeListModel::rowsInserted);
    QSignalSpy removed(&list, &HomeListModel::rowsRemoved);
    QSignalSpy moved(&list, &HomeListModel::rowsMoved);
    QSignalSpy changed(&list, &HomeListModel::dataChanged);
    list.take({row("a"), row("b", "7 MB"), row("c")});
    ASSERT_EQ(changed.size(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 1);
    EXPECT_EQ(changed[0][1].toModelIndex().row(), 1);
    EXPECT_EQ(inserted.size() + removed.size() + moved.size(), 0);
    EXPECT_EQ(list.data(list.index(1), HomeListModel::AmountRole).toString(), "7 MB");
}

TEST(HomeListModel, EqualRowsTellNothing) {
    HomeListModel list;
    list.take({row("a"), row("b")});
    QSignalSpy changed(&list, &HomeListModel::dataChanged);
    QSignalSpy counted(&list, &HomeListModel::countChanged);
    list.take({row("a"), row("b")});
    EXPECT_EQ(changed.size() + counted.size(), 0);
}

RC_GTEST_PROP(HomeListModel, BecomesWhatItIsGivenAndRowsKeepTheirIdentity, ()) {
    const auto draw = [] {
        std::vector<HomeRow> rows;
        for (const int number : *rc::gen::container<std::vector<int>>(rc::gen::inRange(0, 8))) {
            const std::string id = std::to_string(number);
            if (std::ranges::find(rows, id, &HomeRow::id) == rows.end())
                rows.push_back(row(id, *rc::gen::element<std::string>("", "1 MB", "2 MB")));
        }
        return rows;
    };
    const std::vector<HomeRow> before = draw();
    const std::vector<HomeRow> after = draw();
    HomeListModel list;
    list.take(before);
    QSignalSpy reset(&list, &HomeListModel::modelReset);
    std::vector<std::pair<std::string, QPersistentModelIndex>> followed;
    for (int i = 0; i < list.count(); ++i)
        followed.emplace_back(before[static_cast<std::size_t>(i)].id, list.index(i));
    list.take(after);
    RC_ASSERT(list.rows() == after);
    RC_ASSERT(reset.size() == 0);
    for (const auto& [id, index] : followed) {
        const auto there = std::ranges::find(after, id, &HomeRow::id);
        RC_ASSERT(index.isValid() == (there != after.end()));
        if (index.isValid()) RC_ASSERT(index.row() == there - after.begin());
    }
}

TEST(HomeListModel, ItsCountIsTold) {
    HomeListModel list;
    QSignalSpy counted(&list, &HomeListModel::countChanged);
    list.take({row("a"), row("b")});
    EXPECT_EQ(counted.size(), 1);
    list.take({row("b")});
    EXPECT_EQ(counted.size(), 2);
    EXPECT_THAT(ids(list), ::testing::ElementsAre("b"));
}

} // namespace
} // namespace vesko
