#include "core/ItemOrder.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace vesko {

void sortLargestFirst(std::vector<ScannableItem>& items) {
    // An item is large to move, so what is sorted are sizes and places, and each item moves once.
    std::vector<std::pair<std::int64_t, std::size_t>> order(items.size());
    for (std::size_t i = 0; i < items.size(); ++i) order[i] = {items[i].size, i};
    std::sort(order.begin(), order.end(), [](const auto& a, const auto& b) {
        return a.first != b.first ? a.first > b.first : a.second < b.second;
    });
    std::vector<ScannableItem> sorted;
    sorted.reserve(items.size());
    for (const auto& [size, place] : order) sorted.push_back(std::move(items[place]));
    items = std::move(sorted);
}

} // namespace vesko
