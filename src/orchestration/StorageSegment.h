#pragma once
#include <cstdint>
#include <string>

namespace vesko {

/// The palette's names for what a bar shows; their values belong to the theme.
enum class SegmentColor { purple, cyan, green, pink, slate, muted, warning };

/// One segment of a bar.
struct StorageSegment {
    std::string id;
    std::string title;
    std::int64_t bytes = 0;
    SegmentColor color = SegmentColor::muted;
    bool isInteractive = false;

    friend bool operator==(const StorageSegment&, const StorageSegment&) = default;
};

} // namespace vesko
