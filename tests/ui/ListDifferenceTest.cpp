#include "ui/ListDifference.h"
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <string>

namespace vesko {
namespace {

using Pointers = std::vector<const ScannableItem*>;

std::vector<ScannableItem> items(const std::vector<std::string>& names) {
    std::vector<ScannableItem> list;
    for (const std::string& name : names) list.push_back({FileURL("/" + name), 1, false, {}, std::nullopt});
    return list;
}

Pointers pointers(const std::vector<ScannableItem>& list) {
    Pointers all;
    for (const ScannableItem& each : list) all.push_back(&each);
    return all;
}

Pointers applied(Pointers list, const Pointers& wanted, const ListDifference& difference) {
    for (const auto& range : difference.removed) {
        const auto from = list.begin() + static_cast<std::ptrdiff_t>(range.from);
        list.erase(from, from + static_cast<std::ptrdiff_t>(range.count));
    }
    for (const auto& range : difference.inserted) {
        const auto from = wanted.begin() + static_cast<std::ptrdiff_t>(range.from);
        list.insert(list.begin() + static_cast<std::ptrdiff_t>(range.from), from,
                    from + static_cast<std::ptrdiff_t>(range.count));
    }
    return list;
}

std::vector<std::string> paths(const Pointers& list) {
    std::vector<std::string> all;
    for (const ScannableItem* each : list) all.push_back(each->url.path());
    return all;
}

TEST(ListDifference, NeighboursGoAndComeAsOneRange) {
    const auto old = items({"a", "b", "c", "d"});
    const auto wanted = items({"a", "x", "y", "d"});
    const auto difference = listDifference(pointers(old), pointers(wanted));
    ASSERT_TRUE(difference);
    EXPECT_EQ(difference->removed, (std::vector<ListDifference::Range>{{1, 2}}));
    EXPECT_EQ(difference->inserted, (std::vector<ListDifference::Range>{{1, 2}}));
}

TEST(ListDifference, OneThatChangesItsPlaceIsTheOnlyOneTouched) {
    const auto old = items({"a", "b", "c", "d", "e"});
    const auto wanted = items({"e", "a", "b", "c", "d"});
    const auto difference = listDifference(pointers(old), pointers(wanted));
    ASSERT_TRUE(difference);
    EXPECT_EQ(difference->removed, (std::vector<ListDifference::Range>{{4, 1}}));
    EXPECT_EQ(difference->inserted, (std::vector<ListDifference::Range>{{0, 1}}));
}

TEST(ListDifference, AListThatHoldsAnItemTwiceIsLeftToTheCaller) {
    const auto twice = items({"a", "a"});
    const auto once = items({"a"});
    EXPECT_FALSE(listDifference(pointers(twice), pointers(once)));
    EXPECT_FALSE(listDifference(pointers(once), pointers(twice)));
}

TEST(ListDifference, TooManyStrokesAreLeftToTheCaller) {
    const auto old = items({"a", "b", "c", "d", "e", "f"});
    const auto wanted = items({"b", "d", "f"});
    EXPECT_TRUE(listDifference(pointers(old), pointers(wanted), 3));
    EXPECT_FALSE(listDifference(pointers(old), pointers(wanted), 2));
}

RC_GTEST_PROP(ListDifference, AppliedToTheOldListItGivesTheWantedOne, ()) {
    const auto name =
        rc::gen::map(rc::gen::inRange(0, 30), [](int number) { return std::to_string(number); });
    const auto list = rc::gen::unique<std::vector<std::string>>(name);
    const auto old = items(*list);
    const auto wanted = items(*list);
    const auto difference = listDifference(pointers(old), pointers(wanted));
    RC_ASSERT(difference.has_value());
    RC_ASSERT(paths(applied(pointers(old), pointers(wanted), *difference)) == paths(pointers(wanted)));
}

} // namespace
} // namespace vesko
