#pragma once
#include "orchestration/ConsultantCategorySummary.h"
#include <cstdint>
#include <vector>

namespace vesko {

/// The used space in plain categories, and what stays unexplained.
struct ConsultantBreakdown {
    std::vector<ConsultantCategorySummary> categories; ///< largest first; none without bytes
    std::int64_t unexplainedBytes = 0;                 ///< never below 0
    std::int64_t explainedBytes = 0;
    std::int64_t totalUsedBytes = 0;

    friend bool operator==(const ConsultantBreakdown&, const ConsultantBreakdown&) = default;
};

/// Counts each place on disk once: of nested items the one that comes first counts, in the order of the
/// categories, their probes and the groups' items. Pure, near-linear in the items: may run on a worker.
ConsultantBreakdown makeConsultantBreakdown(const std::vector<CleanupGroup>& groups,
                                            std::int64_t totalUsedBytes);

} // namespace vesko
