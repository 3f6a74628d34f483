#include "core/DiskVolumeService.h"

#include "MountTable.h"
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

std::string resolved(const std::string& path) {
    std::error_code failure;
    const std::filesystem::path canonical = std::filesystem::canonical(path, failure);
    return failure ? path : canonical.string();
}

bool isHexadecimal(char character) {
    return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'f') ||
           (character >= 'A' && character <= 'F');
}

/// The device manager writes characters of a label that don't suit a file's name as "\x" and two digits.
std::string unescapedLabel(const std::string& name) {
    std::string text;
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (name.compare(i, 2, "\\x") == 0 && i + 3 < name.size() && isHexadecimal(name[i + 2]) &&
            isHexadecimal(name[i + 3])) {
            text += static_cast<char>(std::stoi(name.substr(i + 2, 2), nullptr, 16));
            i += 3;
        } else {
            text += name[i];
        }
    }
    return text;
}

std::optional<std::string> labelOf(const std::string& device) {
    if (!device.starts_with('/')) return std::nullopt;
    const std::string wanted = resolved(device);
    std::error_code failure;
    for (std::filesystem::directory_iterator entry("/dev/disk/by-label", failure), end;
         !failure && entry != end; entry.increment(failure))
        if (resolved(entry->path().string()) == wanted)
            return unescapedLabel(entry->path().filename().string());
    return std::nullopt;
}

/// The label, else the last name of the mount point; the root of the tree has no name of its own.
std::optional<std::string> nameOf(const FileURL& url) {
    std::ifstream stream("/proc/self/mountinfo", std::ios::binary);
    const std::string table{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    const std::optional<Mount> mount = mountOf(resolved(url.path()), table);
    if (!mount) return std::nullopt;
    if (std::optional<std::string> label = labelOf(mount->source)) return label;
    if (mount->point == "/") return std::nullopt;
    return std::string(FileURL(mount->point).lastPathComponent());
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
