#pragma once
#include "concurrency/Task.h"
#include "core/CleanupGroup.h"
#include "core/ScanRecords.h"
#include "enrichment/ReviewPatch.h"
#include <vector>

namespace vesko {

/// Decides which doubtful items belong in a dedicated group. Runs on the main thread and awaits what blocks.
/// Never fails: what goes wrong inside shows as fewer patches, and so does a cancelled run.
class CleanupReviewing {
public:
    virtual ~CleanupReviewing() = default;
    virtual Task<std::vector<ReviewPatch>> review(std::vector<CleanupGroup> groups,
                                                  std::vector<ScanReviewCandidate> candidates) = 0;
};

} // namespace vesko
