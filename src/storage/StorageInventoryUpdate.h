#pragma once
#include "storage/StorageCategoryBucket.h"
#include <variant>
#include <vector>

namespace vesko {

/// A bucket has been measured.
struct BucketMeasured {
    StorageCategoryBucket bucket;
    friend bool operator==(const BucketMeasured&, const BucketMeasured&) = default;
};

/// The run is over: all buckets in the table's order, "system" last.
struct InventoryFinished {
    std::vector<StorageCategoryBucket> buckets;
    friend bool operator==(const InventoryFinished&, const InventoryFinished&) = default;
};

using StorageInventoryUpdate = std::variant<BucketMeasured, InventoryFinished>;

} // namespace vesko
