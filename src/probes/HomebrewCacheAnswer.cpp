#include "probes/HomebrewCacheAnswer.h"

#include "base/Text.h"
#include <string>
#include <utility>

namespace vesko {

std::optional<FileURL> parseHomebrewCache(std::string_view output) {
    std::string path = trimmedWhiteSpace(output);
    if (!path.starts_with('/')) return std::nullopt;
    return FileURL(std::move(path));
}

} // namespace vesko
