#include "probes/InstallerProbe.h"

#include "base/FileSystem.h"
#include "base/Text.h"
#include "concurrency/CurrentTask.h"
#include "core/GroupBuilders.h"
#include "core/ParallelSizing.h"
#include "probes/InstallerKey.h"
#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace vesko {
namespace {

bool isInstaller(const FileURL& url) {
    static constexpr std::array<std::string_view, 3> extensions{"dmg", "pkg", "xip"};
    return std::ranges::find(extensions, lowercased(url.pathExtension())) != extensions.end();
}

ParallelSizeInput input(const FileURL& installer) {
    ParallelSizeInput made;
    made.url = installer;
    made.isDirectory = isDirectory(installer).value_or(false);
    made.enrichmentKey = EnrichmentKey{installerKey(installer.lastPathComponent())};
    made.minBytes = 1;
    return made;
}

} // namespace

InstallerProbe::InstallerProbe(GroupMetadata metadata) : metadata_(std::move(metadata)) {}

ProbeResult InstallerProbe::run(const ProbeContext& context) const {
    std::vector<ParallelSizeInput> inputs;
    std::unordered_set<FileURL> seen;
    const std::array roots{context.home, context.home.appending("Downloads"),
                           context.home.appending("Desktop")};
    for (const FileURL& root : roots) {
        for (const FileURL& child : directChildren(root, Hidden::skip).value_or(std::vector<FileURL>())) {
            if (currentTaskIsCancelled()) break;
            if (isInstaller(child) && seen.insert(child).second) inputs.push_back(input(child));
        }
    }
    return makeResult(metadata_, sizeInParallel(std::move(inputs), context));
}

} // namespace vesko
