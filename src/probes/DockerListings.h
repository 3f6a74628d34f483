#pragma once
#include "base/FileURL.h"
#include "core/ScannableItem.h"
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Readings of what docker prints; none of them fails, and a line that can't be read is passed over.
namespace vesko {

/// One line of `docker image ls` with the template dockerImageTemplate.
struct DockerImageLine {
    std::string id;
    std::string reference; ///< repository and tag
    std::int64_t size = 0; ///< may be 0

    friend bool operator==(const DockerImageLine&, const DockerImageLine&) = default;
};

/// Id, reference and size, with two blanks between them, since neither of the first two can hold two.
constexpr std::string_view dockerImageTemplate = "{{.ID}}  {{.Repository}}:{{.Tag}}  {{.Size}}";

/// The images in the order of the lines, repeated ids included.
std::vector<DockerImageLine> parseDockerImages(std::string_view output);

/// The names that `docker volume ls -q` prints, one a line.
std::vector<std::string> parseDockerVolumes(std::string_view output);

/// The build cache as an item below the engine's data folder, from what `docker system df` prints. With the
/// template "{{.Type}}\t{{.Size}}" the size is the second field. The plain table has it in the fifth word of
/// its line, and the fourth is read, a count: so the table gives nothing.
std::optional<ScannableItem> parseBuildCacheLine(std::string_view output, const FileURL& dataFolder);

} // namespace vesko
