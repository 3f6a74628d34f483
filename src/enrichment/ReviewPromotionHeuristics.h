#pragma once
#include "core/GroupMetadata.h"
#include "core/ScannableItem.h"
#include "enrichment/PendingReviewItem.h"
#include "enrichment/ReviewPatch.h"
#include <optional>
#include <string_view>
#include <vector>

/// The half of the review that needs no model: a table of well-known places. Pure; safe from any thread.
namespace vesko::ReviewPromotionHeuristics {

struct Promotions {
    std::vector<ReviewPatch> patches;
    std::vector<PendingReviewItem> unplaced; ///< what the table knows nothing of

    friend bool operator==(const Promotions&, const Promotions&) = default;
};

/// The group of the first row that has a piece of the path, whichever way the path and its letters are
/// written.
std::optional<std::string_view> matchGroupID(std::string_view path);

/// Both lists in the order of the items.
Promotions promote(const std::vector<PendingReviewItem>& items);

/// The item into that group: a reclassification where it leaves another group for it, else a promotion.
ReviewPatch moveTo(const GroupMetadata& target, const PendingReviewItem& item);

/// The item as it joins another group: known by its place alone, whatever it was known by before.
ScannableItem movedItem(const PendingReviewItem& item);

} // namespace vesko::ReviewPromotionHeuristics
