#pragma once
#include "base/Date.h"
#include "core/CleanupGroup.h"
#include "core/ProbeFingerprint.h"
#include <cstdint>
#include <optional>
#include <vector>

namespace vesko {

/// What is kept of the last scan between two runs of the program.
struct ScanCacheSnapshot {
    Date scanDate; ///< when the scan ended
    std::int64_t foundTotalBytes = 0;
    std::vector<CleanupGroup> groups;    ///< in displayed order
    std::optional<Date> lastCleanupDate; ///< when the person last deleted anything
    std::optional<std::int64_t> lastCleanupFreedBytes;
    ProbeFingerprints probeFingerprints;

    friend bool operator==(const ScanCacheSnapshot&, const ScanCacheSnapshot&) = default;
};

} // namespace vesko
