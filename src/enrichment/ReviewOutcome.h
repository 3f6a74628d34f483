#pragma once
#include "base/FileURL.h"
#include "core/CleanupGroup.h"
#include "core/EnrichmentKey.h"
#include "enrichment/ReviewPatch.h"
#include <cstdint>
#include <unordered_set>
#include <vector>

namespace vesko {

/// What review patches make of a list of groups, and what follows for the selection.
struct ReviewOutcome {
    std::vector<CleanupGroup> groups;
    std::int64_t applied = 0;            ///< patches that moved something; demotions don't
    std::vector<FileURL> movedURLs;      ///< leave the selection and the person's decisions
    std::vector<FileURL> discoveredURLs; ///< what was promoted, as against moved within the list
    std::unordered_set<EnrichmentKey> keysToReconsider; ///< moved into a group that is safe
};

/// Applies the patches in their order. An item's old place is left whatever group the patch names. Pure: may
/// run on a worker; one walk over the items, however many patches.
ReviewOutcome applyPatches(std::vector<CleanupGroup> groups, const std::vector<ReviewPatch>& patches);

} // namespace vesko
