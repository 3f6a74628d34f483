#include "core/DiskVolumeService.h"

#include "CoreFoundation.h"
#include <limits>
#include <sys/mount.h>
#include <sys/param.h>
#include <vector>

namespace vesko {
namespace {

std::int64_t clamped(std::uint64_t bytes) {
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    return static_cast<std::int64_t>(bytes < most ? bytes : most);
}

std::optional<std::int64_t> number(CFURLRef url, CFStringRef key) {
    CFNumberRef found = nullptr;
    if (!CFURLCopyResourcePropertyForKey(url, key, &found, nullptr) || !found) return std::nullopt;
    const Owned<CFNumberRef> owned(found);
    std::int64_t value = 0;
    if (!CFNumberGetValue(found, kCFNumberSInt64Type, &value)) return std::nullopt;
    return value;
}

std::optional<std::string> text(CFURLRef url, CFStringRef key) {
    CFStringRef found = nullptr;
    if (!CFURLCopyResourcePropertyForKey(url, key, &found, nullptr) || !found) return std::nullopt;
    const Owned<CFStringRef> owned(found);
    const CFIndex longest =
        CFStringGetMaximumSizeForEncoding(CFStringGetLength(found), kCFStringEncodingUTF8);
    std::vector<char> buffer(static_cast<std::size_t>(longest) + 1);
    if (!CFStringGetCString(found, buffer.data(), longest + 1, kCFStringEncodingUTF8)) return std::nullopt;
    return std::string(buffer.data());
}

} // namespace

/// The system's own figures; what it calls free for important usage counts what it would clear by itself.
VolumeFigures readVolumeFigures(const FileURL& url) {
    VolumeFigures figures;
    const std::string& path = url.path();
    const Owned<CFURLRef> location(CFURLCreateFromFileSystemRepresentation(
        kCFAllocatorDefault, reinterpret_cast<const UInt8*>(path.data()), static_cast<CFIndex>(path.size()),
        true));
    if (location) {
        figures.totalCapacity = number(location.get(), kCFURLVolumeTotalCapacityKey);
        figures.available = number(location.get(), kCFURLVolumeAvailableCapacityKey);
        figures.availableForImportantUsage =
            number(location.get(), kCFURLVolumeAvailableCapacityForImportantUsageKey);
        figures.availableForOpportunisticUsage =
            number(location.get(), kCFURLVolumeAvailableCapacityForOpportunisticUsageKey);
        figures.localizedName = text(location.get(), kCFURLVolumeLocalizedNameKey);
    }
    struct statfs volume{};
    if (::statfs(path.c_str(), &volume) == 0)
        figures.fileSystemFree = clamped(volume.f_bavail * static_cast<std::uint64_t>(volume.f_bsize));
    return figures;
}

} // namespace vesko
