#pragma once
#include "orchestration/StorageSegment.h"
#include <QVariantList>
#include <vector>

namespace vesko {

/// The segments as a bar and its legend take them. Of each: "id", "title", "bytes", "amount" (formatted),
/// "color" (a SegmentColor), "interactive".
QVariantList segmentList(const std::vector<StorageSegment>& segments);

} // namespace vesko
