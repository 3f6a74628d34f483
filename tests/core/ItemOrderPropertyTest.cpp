#include "core/ItemOrder.h"

#include "support/builders.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <string>

namespace vesko {
namespace {

/// Few different sizes, so that many are equal and their order shows.
RC_GTEST_PROP(ItemOrderProperties, TheLargestStandFirstAndEqualOnesStayInOrder, ()) {
    const auto sizes = *rc::gen::container<std::vector<std::int64_t>>(rc::gen::inRange<std::int64_t>(0, 9));
    std::vector<ScannableItem> items;
    for (std::size_t i = 0; i < sizes.size(); ++i)
        items.push_back(testing::item("/h/" + std::to_string(i), sizes[i]));
    std::vector<ScannableItem> expected = items;
    std::ranges::stable_sort(expected, std::ranges::greater(), &ScannableItem::size);
    sortLargestFirst(items);
    RC_ASSERT(items == expected);
}

} // namespace
} // namespace vesko
