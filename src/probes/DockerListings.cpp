#include "probes/DockerListings.h"

#include "base/Text.h"
#include "core/GroupBuilders.h"
#include "probes/DockerSize.h"
#include "probes/TextPieces.h"
#include <utility>

namespace vesko {
namespace {

std::optional<DockerImageLine> imageOfLine(std::string_view line) {
    const std::string trimmed = trimmedWhiteSpace(line);
    const std::vector<std::string_view> columns = piecesOf(trimmed, "  ", 3);
    if (columns.size() < 3) return std::nullopt;
    const std::optional<std::int64_t> size = parseDockerSize(columns[2]);
    if (!size) return std::nullopt;
    return DockerImageLine{std::string(columns[0]), std::string(columns[1]), *size};
}

std::optional<std::int64_t> sizeOfLine(std::string_view line) {
    if (const auto field = secondField(line, '\t'))
        if (const auto size = parseDockerSize(*field)) return size;
    if (const auto words = wordsOf(line, 4); words.size() == 4) return parseDockerSize(words[3]);
    return std::nullopt;
}

ScannableItem buildCache(std::int64_t size, const FileURL& dataFolder) {
    ScannableItem item;
    item.url = dataFolder.appending("buildcache");
    item.size = size;
    item.isDirectory = true;
    item.enrichmentKey = {"docker:prune:buildcache"};
    item.displayLabel = probeTitle("docker.buildcache");
    return item;
}

} // namespace

std::vector<DockerImageLine> parseDockerImages(std::string_view output) {
    std::vector<DockerImageLine> images;
    while (const auto line = takePiece(output, "\n"))
        if (auto image = imageOfLine(*line)) images.push_back(std::move(*image));
    return images;
}

std::vector<std::string> parseDockerVolumes(std::string_view output) {
    std::vector<std::string> names;
    while (const auto line = takePiece(output, "\n"))
        if (const std::string_view name = trimmedBlanks(*line); !name.empty()) names.emplace_back(name);
    return names;
}

std::optional<ScannableItem> parseBuildCacheLine(std::string_view output, const FileURL& dataFolder) {
    while (const auto line = takePiece(output, "\n")) {
        if (!containsIgnoringCase(*line, "build cache")) continue;
        if (const auto size = sizeOfLine(*line)) return buildCache(*size, dataFolder);
    }
    return std::nullopt;
}

} // namespace vesko
