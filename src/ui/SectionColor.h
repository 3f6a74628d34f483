#pragma once
#include "orchestration/StorageSegment.h"
#include <string_view>

namespace vesko {

/// The colour of a band: of its icons and of its segment in the bar.
SegmentColor sectionColor(std::string_view sectionID) noexcept;

} // namespace vesko
