#pragma once
#include "base/FileURL.h"
#include "core/EnrichmentKey.h"
#include <cstdint>
#include <optional>
#include <string>

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

} // namespace vesko
