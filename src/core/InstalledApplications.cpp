#include "core/InstalledApplications.h"

#include "base/FileSystem.h"
#include "base/Paths.h"
#include "core/BundleIdentifier.h"
#include <utility>

namespace vesko {

std::vector<FileURL> applicationRoots() {
    return {FileURL("/Applications"), homeFolder().appending("Applications")};
}

std::unordered_set<std::string> installedBundleIDs(const std::vector<FileURL>& roots) {
    std::unordered_set<std::string> identifiers;
    for (const FileURL& root : roots) {
        for (const FileURL& entry : directChildren(root, Hidden::skip).value_or(std::vector<FileURL>())) {
            if (entry.pathExtension() != "app") continue;
            if (std::optional<std::string> identifier = bundleIdentifier(entry))
                identifiers.insert(std::move(*identifier));
        }
    }
    return identifiers;
}

} // namespace vesko
