#pragma once
#include "core/ScannableItem.h"
#include <cstddef>
#include <optional>
#include <vector>

namespace vesko {

/// How one list of items becomes another with few strokes: first the ranges of the old list to remove, last
/// first, then the ranges of the new list to insert, first first.
struct ListDifference {
    struct Range {
        std::size_t from;
        std::size_t count;
        friend bool operator==(const Range&, const Range&) = default;
    };
    std::vector<Range> removed;
    std::vector<Range> inserted;
};

/// Items are told apart by URL. What keeps its order stays; what changes its place is removed and inserted.
/// Nothing when a list holds an item twice or the strokes would be more than `mostRanges`, so that replacing
/// the whole is cheaper.
std::optional<ListDifference> listDifference(const std::vector<const ScannableItem*>& old,
                                             const std::vector<const ScannableItem*>& wanted,
                                             std::size_t mostRanges = 256);

} // namespace vesko
