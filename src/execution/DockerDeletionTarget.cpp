#include "execution/DockerDeletionTarget.h"

#include <string_view>

namespace vesko {

namespace {

/// What follows `prefix`; nothing when the text does not begin with it or nothing follows.
std::optional<std::string> restBehind(std::string_view text, std::string_view prefix) {
    if (!text.starts_with(prefix) || text.size() == prefix.size()) return std::nullopt;
    return std::string(text.substr(prefix.size()));
}

struct Arguments {
    std::vector<std::string> operator()(const DockerDeletionTarget::Image& image) const {
        return {"rmi", "-f", image.id};
    }
    std::vector<std::string> operator()(const DockerDeletionTarget::Volume& volume) const {
        return {"volume", "rm", "-f", volume.name};
    }
    std::vector<std::string> operator()(const DockerDeletionTarget::Prune& prune) const {
        switch (prune.kind) {
        case DockerPruneKind::images: return {"image", "prune", "-a", "-f"};
        case DockerPruneKind::volumes: return {"volume", "prune", "-f"};
        case DockerPruneKind::buildcache: break;
        }
        return {"builder", "prune", "-a", "-f"};
    }
};

} // namespace

std::optional<DockerDeletionTarget> DockerDeletionTarget::fromKey(const EnrichmentKey& key) {
    if (auto id = restBehind(key.rawValue, "docker:image:")) return DockerDeletionTarget{Image{*id}};
    if (auto name = restBehind(key.rawValue, "docker:volume:")) return DockerDeletionTarget{Volume{*name}};
    if (key.rawValue == "docker:prune:images") return DockerDeletionTarget{Prune{DockerPruneKind::images}};
    if (key.rawValue == "docker:prune:volumes") return DockerDeletionTarget{Prune{DockerPruneKind::volumes}};
    if (key.rawValue == "docker:prune:buildcache")
        return DockerDeletionTarget{Prune{DockerPruneKind::buildcache}};
    return std::nullopt;
}

std::vector<std::string> DockerDeletionTarget::arguments() const { return std::visit(Arguments{}, value); }

} // namespace vesko
