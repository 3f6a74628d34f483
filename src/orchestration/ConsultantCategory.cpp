#include "orchestration/ConsultantCategory.h"

#include "base/StringCatalog.h"
#include "base/Text.h"
#include <algorithm>
#include <array>
#include <utility>

namespace vesko {
namespace {

std::vector<ConsultantCategory> makeCategories() {
    using namespace sections;
    return {
        {"xcode-builds",
         "hammer",
         development(),
         {"xcode.derivedData", "xcode.archives", "xcode.deviceSupport", "xcode.previews"}},
        {"simulators",
         "iphone",
         development(),
         {"xcode.simulators.unavailable", "xcode.simulators.all", "xcode.simulator.runtime"}},
        // Both rows read the same group. The first takes every path of it, so the second never shows: the
        // artifacts of all languages are one group and stay one.
        {"nodejs", "shippingbox", development(), {"project.artifacts"}},
        {"swift-apple", "swift", development(), {"project.artifacts"}},
        {"containers-vms",
         "shippingbox.fill",
         development(),
         {"docker.images", "docker.volumes", "docker.buildcache"}},
        {"caches",
         "archivebox",
         caches(),
         {"discover.caches", "cache.npm", "cache.pnpm", "cache.yarn", "cache.cargo", "cache.gradle",
          "cache.pip", "cache.poetry", "cache.uv", "cache.bun", "cache.nuget", "cache.rbenv",
          "cache.cocoapods", "cache.go", "cache.swiftpm", "cache.homebrew", "cache.maven",
          "cache.jetbrains"}},
        {"system", "gearshape", system(), {"logs.stale", "trash"}},
        {"apps", "app", apps(), {"apps.unused", "discover.appSupport"}},
        {"backups", "iphone.and.arrow.forward", apps(), {"backup.ios"}},
        {"downloads",
         "arrow.down.circle",
         downloads(),
         {"downloads.stale", "downloads.unopened", "installers.forgotten"}},
    };
}

std::string textOf(std::string_view id, std::string_view what) {
    return localized("consultant.category." + consultantKey(id) + "." + std::string(what));
}

} // namespace

const std::vector<ConsultantCategory>& consultantCategories() {
    static const std::vector<ConsultantCategory> categories = makeCategories();
    return categories;
}

const ConsultantCategory* consultantCategory(std::string_view id) {
    for (const ConsultantCategory& category : consultantCategories())
        if (category.id == id) return &category;
    return nullptr;
}

std::string consultantKey(std::string_view id) {
    // What the general rule would spell otherwise. The caches share the texts of the package managers.
    static constexpr std::array<std::pair<std::string_view, std::string_view>, 3> own{{
        {"containers-vms", "containersVMs"},
        {"package-managers", "packageManagers"},
        {"caches", "packageManagers"},
    }};
    for (const auto& [name, key] : own)
        if (name == id) return std::string(key);
    std::string key;
    for (std::size_t begin = 0; begin <= id.size();) {
        const std::size_t end = std::min(id.find('-', begin), id.size());
        const std::string_view piece = id.substr(begin, end - begin);
        key += begin == 0 ? std::string(piece) : withFirstCharacterUppercased(piece);
        begin = end + 1;
    }
    return key;
}

std::string consultantCategoryTitle(std::string_view id) { return textOf(id, "title"); }
std::string consultantCategoryExplanation(std::string_view id) { return textOf(id, "explanation"); }

} // namespace vesko
