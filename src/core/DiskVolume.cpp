#include "core/DiskVolume.h"

#include "base/StringCatalog.h"
#include <algorithm>
#include <array>
#include <utility>

namespace vesko {

std::string_view availableSpaceMetricWord(AvailableSpaceMetric metric) noexcept {
    switch (metric) {
    case AvailableSpaceMetric::importantUsage: return "importantUsage";
    case AvailableSpaceMetric::standard: return "standard";
    case AvailableSpaceMetric::opportunisticUsage: return "opportunisticUsage";
    case AvailableSpaceMetric::fileSystemFree: return "fileSystemFree";
    }
    return "standard";
}

DiskVolumeInfo volumeInfo(const VolumeFigures& figures) {
    DiskVolumeInfo info;
    info.totalBytes = std::max<std::int64_t>(figures.totalCapacity.value_or(0), 0);
    const std::array<std::pair<std::optional<std::int64_t>, AvailableSpaceMetric>, 4> measures{{
        {figures.availableForImportantUsage, AvailableSpaceMetric::importantUsage},
        {figures.available, AvailableSpaceMetric::standard},
        {figures.availableForOpportunisticUsage, AvailableSpaceMetric::opportunisticUsage},
        {figures.fileSystemFree, AvailableSpaceMetric::fileSystemFree},
    }};
    for (const auto& [bytes, metric] : measures) {
        if (bytes.value_or(0) <= 0) continue;
        info.availableBytes = *bytes;
        info.availableSpaceMetric = metric;
        break;
    }
    info.volumeName = figures.localizedName ? *figures.localizedName : localized("volume.defaultName");
    return info;
}

} // namespace vesko
