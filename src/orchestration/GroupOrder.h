#pragma once
#include "core/CleanupGroup.h"
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace vesko {

/// The list's order: the largest total first, equal ones as they stood.
inline void sortLargestFirst(std::vector<CleanupGroup>& groups) {
    std::vector<std::pair<std::int64_t, std::size_t>> order;
    order.reserve(groups.size());
    for (std::size_t index = 0; index < groups.size(); ++index)
        order.emplace_back(groupBytes(groups[index]), index);
    std::stable_sort(order.begin(), order.end(),
                     [](const auto& a, const auto& b) { return a.first > b.first; });
    std::vector<CleanupGroup> sorted;
    sorted.reserve(groups.size());
    for (const auto& [bytes, index] : order) sorted.push_back(std::move(groups[index]));
    groups = std::move(sorted);
}

} // namespace vesko
