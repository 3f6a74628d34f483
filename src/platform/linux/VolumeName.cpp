#include "VolumeName.h"

#include "MountTable.h"
#include "base/FileURL.h"
#include <filesystem>

namespace vesko {
namespace {

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

std::optional<std::string> labelOf(const std::string& device, const std::string& labelFolder) {
    if (!device.starts_with('/')) return std::nullopt;
    std::error_code failure;
    const std::filesystem::path wanted = std::filesystem::canonical(device, failure);
    if (failure) return std::nullopt;
    std::filesystem::directory_iterator entry(labelFolder, failure);
    for (const std::filesystem::directory_iterator end; !failure && entry != end; entry.increment(failure)) {
        std::error_code broken;
        if (std::filesystem::canonical(entry->path(), broken) == wanted && !broken)
            return unescapedLabel(entry->path().filename().string());
    }
    return std::nullopt;
}

} // namespace

std::optional<std::string> volumeName(std::string_view path, std::string_view mountTable,
                                      const std::string& labelFolder) {
    const std::optional<Mount> mount = mountOf(path, mountTable);
    if (!mount) return std::nullopt;
    if (std::optional<std::string> label = labelOf(mount->source, labelFolder)) return label;
    if (mount->point == "/") return std::nullopt;
    return std::string(FileURL(mount->point).lastPathComponent());
}

} // namespace vesko
