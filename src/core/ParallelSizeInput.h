#pragma once
#include "base/FileURL.h"
#include "core/EnrichmentKey.h"
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace vesko {

/// One thing to be measured, and what its item will carry.
struct ParallelSizeInput {
    FileURL url;
    bool isDirectory = false;
    std::optional<EnrichmentKey> enrichmentKey; ///< absent: the "url:" form
    std::optional<std::string> displayLabel;
    bool preferDiskUsage = false;
    bool useLinkAwareSize = false; ///< linkAwareSize is asked instead of size
    std::int64_t minBytes = 0;     ///< smallest size that keeps the item

    friend bool operator==(const ParallelSizeInput&, const ParallelSizeInput&) = default;
};

/// A folder of a tool's, measured as `du` does.
inline ParallelSizeInput folderInput(FileURL folder) {
    ParallelSizeInput input;
    input.url = std::move(folder);
    input.isDirectory = true;
    input.preferDiskUsage = true;
    return input;
}

} // namespace vesko
