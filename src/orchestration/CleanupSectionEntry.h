#pragma once
#include "core/CleanupGroup.h"
#include <vector>

namespace vesko {

/// One band of the list on screen with its groups in list order.
struct CleanupSectionEntry {
    CleanupSection section;
    std::vector<CleanupGroup> groups;

    friend bool operator==(const CleanupSectionEntry&, const CleanupSectionEntry&) = default;
};

} // namespace vesko
