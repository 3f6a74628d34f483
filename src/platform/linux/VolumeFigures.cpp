#include "core/DiskVolumeService.h"

#include "VolumeName.h"
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <sys/statvfs.h>

namespace vesko {
namespace {

std::int64_t bytes(std::uint64_t blocks, std::uint64_t blockSize) {
    std::uint64_t product = 0;
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (__builtin_mul_overflow(blocks, blockSize, &product) || product > most)
        return std::numeric_limits<std::int64_t>::max();
    return static_cast<std::int64_t>(product);
}

std::optional<std::string> nameOf(const FileURL& url) {
    std::error_code failure;
    const std::filesystem::path resolved = std::filesystem::canonical(url.path(), failure);
    if (failure) return std::nullopt;
    std::ifstream stream("/proc/self/mountinfo", std::ios::binary);
    const std::string table{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    return volumeName(resolved.string(), table, "/dev/disk/by-label");
}

} // namespace

/// statvfs(3) knows the capacity and what an ordinary user may still take; the blocks kept for the
/// administrator are of no use to the person and count nowhere.
VolumeFigures readVolumeFigures(const FileURL& url) {
    VolumeFigures figures;
    struct statvfs volume{};
    if (::statvfs(url.path().c_str(), &volume) == 0) {
        figures.totalCapacity = bytes(volume.f_blocks, volume.f_frsize);
        figures.available = bytes(volume.f_bavail, volume.f_frsize);
    }
    figures.localizedName = nameOf(url);
    return figures;
}

} // namespace vesko
