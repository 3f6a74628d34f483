#pragma once
#include "base/Date.h"
#include "storage/StorageCategoryBucket.h"
#include <cstdint>
#include <vector>

namespace vesko {

/// The figures of one measurement, as they are kept.
struct StorageInventorySnapshot {
    Date capturedAt;
    std::int64_t volumeUsedBytes = 0;
    std::vector<StorageCategoryBucket> buckets; ///< those that were measured

    friend bool operator==(const StorageInventorySnapshot&, const StorageInventorySnapshot&) = default;
};

} // namespace vesko
