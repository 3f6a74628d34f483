#pragma once
#include "enrichment/CleanupReviewing.h"

namespace vesko {

/// Stands where there is no language model: it leaves everything where it is.
class UnavailableReview final : public CleanupReviewing {
public:
    Task<std::vector<ReviewPatch>> review(std::vector<CleanupGroup>,
                                          std::vector<ScanReviewCandidate>) override {
        co_return std::vector<ReviewPatch>{};
    }
};

} // namespace vesko
