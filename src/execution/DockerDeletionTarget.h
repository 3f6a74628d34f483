#pragma once
#include "core/EnrichmentKey.h"
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace vesko {

enum class DockerPruneKind { images, volumes, buildcache };

/// What a key names inside the container tool.
struct DockerDeletionTarget {
    struct Image {
        std::string id;
        friend bool operator==(const Image&, const Image&) = default;
    };
    struct Volume {
        std::string name;
        friend bool operator==(const Volume&, const Volume&) = default;
    };
    struct Prune {
        DockerPruneKind kind = DockerPruneKind::images;
        friend bool operator==(const Prune&, const Prune&) = default;
    };
    std::variant<Image, Volume, Prune> value;

    /// Nothing for every key of another form: an empty name, an unknown word after "docker:prune:".
    static std::optional<DockerDeletionTarget> fromKey(const EnrichmentKey& key);
    /// What the tool is given to delete it.
    std::vector<std::string> arguments() const;

    friend bool operator==(const DockerDeletionTarget&, const DockerDeletionTarget&) = default;
};

} // namespace vesko
