#pragma once
#include "core/CleanupGroup.h"
#include "orchestration/ConsultantCategory.h"
#include <cstdint>
#include <vector>

namespace vesko {

/// What one category of used space amounts to.
struct ConsultantCategorySummary {
    ConsultantCategory category;
    std::int64_t totalBytes = 0;
    std::int64_t itemCount = 0;
    Safety aggregatedSafety = Safety::seguro; ///< the riskiest of the groups' own verdicts
    std::vector<CleanupGroup> groups;         ///< whole, also what counted for an earlier category

    friend bool operator==(const ConsultantCategorySummary&, const ConsultantCategorySummary&) = default;
};

} // namespace vesko
