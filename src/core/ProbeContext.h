#pragma once
#include "base/Date.h"
#include "base/FileURL.h"
#include "core/CommandRunning.h"
#include "core/SizeCalculating.h"
#include <memory>
#include <string>
#include <unordered_set>

namespace vesko {

struct Executor;

/// What a probe is given: made once a scan, the same for all its probes, only read.
struct ProbeContext {
    FileURL home; ///< every relative path of a probe is taken from here
    std::unordered_set<std::string> installedBundleIDs;
    Date now; ///< when the scan began; age rules compare against this
    std::shared_ptr<const SizeCalculating> size;
    std::unordered_set<std::string> claimedPaths; ///< paths that a probe leaves to another
    std::unordered_set<std::string> demotedPaths; ///< paths to leave out
    std::shared_ptr<const CommandRunning> runner;
    Executor* workers =
        nullptr; ///< where sizeInParallel puts its children; null measures in the calling thread
};

} // namespace vesko
