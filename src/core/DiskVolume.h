#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vesko {

/// Which of the platform's measures gave the free space.
enum class AvailableSpaceMetric { importantUsage, standard, opportunisticUsage, fileSystemFree };
/// The case's own name.
std::string_view availableSpaceMetricWord(AvailableSpaceMetric metric) noexcept;

/// The volume that holds the home folder.
struct DiskVolumeInfo {
    std::int64_t totalBytes = 0;     ///< 0 when unknown
    std::int64_t availableBytes = 0; ///< 0 when no measure gave a usable figure
    std::string volumeName;
    AvailableSpaceMetric availableSpaceMetric = AvailableSpaceMetric::standard;

    friend bool operator==(const DiskVolumeInfo&, const DiskVolumeInfo&) = default;
};

/// Blocks for two questions to the file system; cannot fail; any thread.
class DiskVolumeReading {
public:
    virtual ~DiskVolumeReading() = default;
    virtual DiskVolumeInfo readVolume() const = 0;
};

/// What a platform can say of a volume; absent is what it can't.
struct VolumeFigures {
    std::optional<std::int64_t> totalCapacity;
    std::optional<std::int64_t> availableForImportantUsage;
    std::optional<std::int64_t> available;
    std::optional<std::int64_t> availableForOpportunisticUsage;
    std::optional<std::int64_t> fileSystemFree;
    std::optional<std::string> localizedName;
};
/// Takes the first free-space figure that is there and above zero, in the order of the fields.
DiskVolumeInfo volumeInfo(const VolumeFigures& figures);

} // namespace vesko
