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
    // Along each ring of places that exchange their items; second becomes the place itself once it is filled.
    for (std::size_t first = 0; first < order.size(); ++first) {
        if (order[first].second == first) continue;
        ScannableItem held = std::move(items[first]);
        std::size_t place = first;
        for (std::size_t next = order[place].second; next != first; next = order[place].second) {
            items[place] = std::move(items[next]);
            order[place].second = place;
            place = next;
        }
        items[place] = std::move(held);
        order[place].second = place;
    }
}

} // namespace vesko
