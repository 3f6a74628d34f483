#include "probes/ShallowScanProbe.h"

#include "base/FileSystem.h"
#include "concurrency/CurrentTask.h"
#include "core/GroupBuilders.h"
#include "core/ParallelSizing.h"
#include "enrichment/DisplayName.h"
#include <utility>

namespace vesko {

ShallowScanProbe::ShallowScanProbe(ShallowScanRow row) : row_(std::move(row)) {}

ProbeResult ShallowScanProbe::run(const ProbeContext& context) const {
    const auto children = directChildren(context.home.appending(row_.relativeRoot), Hidden::skip);
    if (!children) return {};
    std::vector<ParallelSizeInput> inputs;
    for (const FileURL& child : *children) {
        if (currentTaskIsCancelled()) break;
        if (isKept(child, context)) inputs.push_back(input(child));
    }
    return makeResult(row_.metadata, sizeInParallel(std::move(inputs), context));
}

bool ShallowScanProbe::isKept(const FileURL& child, const ProbeContext& context) const {
    if (context.claimedPaths.contains(child.path())) return false;
    if (!row_.onlyUninstalled) return true;
    const std::string name(child.lastPathComponent());
    // Identifiers are compared as they are written: one that differs in case is another application's.
    return isBundleIdentifier(name) && !context.installedBundleIDs.contains(name);
}

ParallelSizeInput ShallowScanProbe::input(const FileURL& child) const {
    ParallelSizeInput made;
    made.url = child;
    made.isDirectory = true; // applications keep folders here; a loose file is shown as one
    made.enrichmentKey = EnrichmentKey::forBundle(child.lastPathComponent());
    made.preferDiskUsage = true;
    made.minBytes = row_.minBytes;
    return made;
}

} // namespace vesko
