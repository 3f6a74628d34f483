#include "Fuzzing.h"
#include "probes/DockerListings.h"

using namespace vesko;
using fuzzing::require;

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text = fuzzing::textOf(bytes, size);
    const std::vector<DockerImageLine> images = parseDockerImages(text);
    for (const DockerImageLine& image : images) {
        require(!image.id.empty() && !image.reference.empty(), "an image has an id and a reference");
        require(!image.id.contains("  ") && !image.reference.contains("  "), "two blanks end a column");
        require(!image.id.contains('\n') && !image.reference.contains('\n'), "a line ends an image");
    }
    // Lines do not see each other.
    const std::string_view first = text.substr(0, text.find('\n'));
    std::vector<DockerImageLine> parts = parseDockerImages(first);
    for (const DockerImageLine& image : parseDockerImages(text.substr(first.size()))) parts.push_back(image);
    require(parts == images, "every line is read by itself");
    return 0;
}
