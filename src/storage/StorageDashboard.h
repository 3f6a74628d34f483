#pragma once
#include "orchestration/ConsultantBreakdown.h"
#include "storage/StorageCategoryBucket.h"
#include <cstdint>
#include <optional>
#include <vector>

namespace vesko {

/// What the Home screen shows of the volume.
struct StorageDashboard {
    std::vector<StorageCategoryBucket> buckets; ///< the remainder "system" last
    std::int64_t totalUsedBytes = 0;
    std::optional<ConsultantBreakdown> cleanupInsights;

    friend bool operator==(const StorageDashboard&, const StorageDashboard&) = default;
};

} // namespace vesko
