#include "orchestration/ValidationMerge.h"

#include "core/SignificanceEngine.h"
#include "orchestration/GroupOrder.h"
#include <algorithm>
#include <utility>

namespace vesko {

std::vector<CleanupGroup> mergeValidationGroups(const std::vector<CleanupGroup>& cached,
                                                const std::vector<CleanupGroup>& fresh,
                                                const std::unordered_set<std::string>& ranProbeIDs) {
    std::vector<CleanupGroup> merged;
    merged.reserve(cached.size() + fresh.size());
    for (const CleanupGroup& group : cached)
        if (!ranProbeIDs.contains(group.id)) merged.push_back(group);
    merged.insert(merged.end(), fresh.begin(), fresh.end());
    merged = consolidateProjectArtifacts(std::move(merged));
    std::erase_if(merged, [](const CleanupGroup& group) { return group.items.empty(); });
    sortLargestFirst(merged);
    return merged;
}

std::int64_t validationTotalBytes(const std::vector<CleanupGroup>& groups) { return totalBytes(groups); }

} // namespace vesko
