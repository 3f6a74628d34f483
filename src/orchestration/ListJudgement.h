#pragma once
#include "core/GroupBuilders.h"
#include "core/SignificanceEngine.h"
#include <utility>
#include <vector>

namespace vesko {

/// What follows when one more group has come.
struct ListJudgement {
    std::vector<ScanReviewCandidate> candidates; ///< that the new group offers
    ScanReport report;                           ///< of the whole list with it
};

/// Blocks for the dates of the candidates: runs on a worker.
inline ListJudgement judgeList(const SignificanceEngine& engine, std::vector<CleanupGroup> list,
                               const CleanupGroup& fresh, const DateSource& dates) {
    ListJudgement judgement;
    judgement.candidates = reviewCandidates(fresh);
    judgement.report = engine.evaluate(std::move(list), {}, dates);
    return judgement;
}

} // namespace vesko
