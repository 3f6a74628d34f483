#include "enrichment/ReviewOutcome.h"

#include "enrichment/ReviewedGroups.h"
#include <utility>

namespace vesko {
namespace {

struct Move {
    const ScannableItem* item;
    const GroupMetadata* target;
    bool isDiscovery;
};

std::vector<Move> movesOf(const std::vector<ReviewPatch>& patches) {
    std::vector<Move> moves;
    for (const ReviewPatch& patch : patches) {
        if (const auto* promote = std::get_if<ReviewPatch::Promote>(&patch.value))
            moves.push_back({&promote->item, &promote->metadata, true});
        if (const auto* reclassify = std::get_if<ReviewPatch::Reclassify>(&patch.value))
            moves.push_back({&reclassify->item, &reclassify->to, false});
    }
    return moves;
}

} // namespace

ReviewOutcome applyPatches(std::vector<CleanupGroup> groups, const std::vector<ReviewPatch>& patches) {
    ReviewOutcome outcome;
    const std::vector<Move> moves = movesOf(patches);
    if (moves.empty()) {
        outcome.groups = std::move(groups);
        return outcome;
    }
    for (const Move& move : moves) outcome.movedURLs.push_back(move.item->url);
    ReviewedGroups reviewed(std::move(groups), outcome.movedURLs);
    for (const Move& move : moves) {
        reviewed.remove(move.item->url);
        if (move.isDiscovery) outcome.discoveredURLs.push_back(move.item->url);
        const Safety safety = reviewed.add(*move.item, *move.target);
        // A later move of the same item takes back what an earlier one has promised.
        if (safety == Safety::seguro)
            outcome.keysToReconsider.insert(move.item->enrichmentKey);
        else
            outcome.keysToReconsider.erase(move.item->enrichmentKey);
        ++outcome.applied;
    }
    outcome.groups = reviewed.groups();
    return outcome;
}

} // namespace vesko
