#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vesko {

/// One part of what fills the start-up volume.
struct StorageCategoryBucket {
    std::string id;
    std::string titleKey; ///< of the string catalog
    std::string icon;
    std::int64_t bytes = 0;
    std::vector<std::string> paths; ///< what was measured; empty for the remainder
    /// The consultant's categories that lie in this bucket; absent when none can.
    std::optional<std::vector<std::string>> cleanupCategoryIDs;

    friend bool operator==(const StorageCategoryBucket&, const StorageCategoryBucket&) = default;
};

} // namespace vesko
