#pragma once
#include "core/Safety.h"
#include "orchestration/StorageSegment.h"
#include <string>

namespace vesko {

/// One line of the Home screen's lists, as texts in the current language: a bucket, or a category of what can
/// go.
struct HomeRow {
    std::string id;
    std::string title;
    std::string detail; ///< what deleting does; empty for a bucket
    std::string icon;
    std::string amount; ///< formatted
    SegmentColor tint = SegmentColor::muted;
    Safety safety = Safety::seguro;
    bool isBusy = false; ///< being measured
    bool isSelected = false;

    friend bool operator==(const HomeRow&, const HomeRow&) = default;
};

} // namespace vesko
