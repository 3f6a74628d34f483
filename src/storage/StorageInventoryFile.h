#pragma once
#include "storage/StorageInventorySnapshot.h"
#include <optional>
#include <string>
#include <string_view>

namespace vesko {

/// The file form of a StorageInventorySnapshot: one JSON object with schemaVersion 1, dates in ISO 8601 with
/// whole seconds.
struct StorageInventoryFile {
    /// A bucket with a path that is no UTF-8 is left out: it will be measured again.
    static std::string encode(const StorageInventorySnapshot& snapshot);
    /// Nothing for another schema and for anything that is not as it should be.
    static std::optional<StorageInventorySnapshot> decode(std::string_view bytes);
};

} // namespace vesko
