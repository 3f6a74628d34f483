#include "Fuzzing.h"
#include "base/Text.h"
#include "probes/DockerListings.h"
#include <algorithm>
#include <string>

namespace {

/// Line by line, as it is read: bytes that are no UTF-8 change how the text around them compares.
bool isNamedInALine(std::string_view text) {
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        if (vesko::containsIgnoringCase(line, "build cache")) return true;
        text.remove_prefix(std::min(text.size(), line.size() + 1));
    }
    return false;
}

} // namespace

using namespace vesko;
using fuzzing::require;

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text = fuzzing::textOf(bytes, size);
    const FileURL data("/home/person/data");
    const std::optional<ScannableItem> item = parseBuildCacheLine(text, data);
    require(parseBuildCacheLine("Images\t1GB\n" + std::string(text), data) == item,
            "other lines do not count");
    if (!item) return 0;
    require(item->url == data.appending("buildcache"), "the cache has one place");
    require(item->enrichmentKey.rawValue == "docker:prune:buildcache", "the cache has one key");
    require(isNamedInALine(text), "the cache is named");
    return 0;
}
