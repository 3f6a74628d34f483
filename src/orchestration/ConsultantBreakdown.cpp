#include "orchestration/ConsultantBreakdown.h"

#include "base/CheckedSum.h"
#include "base/Paths.h"
#include "core/GroupBuilders.h"
#include "orchestration/PathOverlapSet.h"
#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace vesko {
namespace {

/// The items of both, one for each URL: the larger one, of equal ones the first.
ItemList mergedItems(const ItemList& first, const ItemList& second) {
    std::vector<ScannableItem> items;
    std::unordered_map<FileURL, std::size_t> places;
    items.reserve(first.size() + second.size());
    places.reserve(first.size() + second.size());
    for (const ItemList* list : {&first, &second}) {
        for (const ScannableItem& item : *list) {
            const auto [place, isNew] = places.try_emplace(item.url, items.size());
            if (isNew)
                items.push_back(item);
            else if (item.size > items[place->second].size)
                items[place->second] = item;
        }
    }
    return ItemList(std::move(items));
}

using GroupsByID = std::unordered_map<std::string_view, CleanupGroup>;

GroupsByID groupsByID(const std::vector<CleanupGroup>& groups) {
    GroupsByID byID;
    for (const CleanupGroup& group : groups) {
        const auto [place, isNew] = byID.try_emplace(group.id, group);
        if (!isNew) place->second = withItems(place->second, mergedItems(place->second.items, group.items));
    }
    return byID;
}

ConsultantCategorySummary summarize(const ConsultantCategory& category, std::vector<CleanupGroup> groups,
                                    PathOverlapSet& seen) {
    ConsultantCategorySummary summary{category, 0, 0, Safety::seguro, std::move(groups)};
    for (const CleanupGroup& group : summary.groups) {
        for (const ScannableItem& item : group.items) {
            if (!seen.insert(standardizedPath(item.url.path()))) continue;
            summary.totalBytes = checkedSum(summary.totalBytes, item.size);
            ++summary.itemCount;
            summary.aggregatedSafety = std::max(summary.aggregatedSafety, group.baselineSafety);
        }
    }
    return summary;
}

} // namespace

ConsultantBreakdown makeConsultantBreakdown(const std::vector<CleanupGroup>& groups,
                                            std::int64_t totalUsedBytes) {
    const GroupsByID byID = groupsByID(groups);
    PathOverlapSet seen;
    ConsultantBreakdown breakdown;
    for (const ConsultantCategory& category : consultantCategories()) {
        std::vector<CleanupGroup> own;
        for (const std::string& id : category.probeIDs)
            if (const auto found = byID.find(id); found != byID.end()) own.push_back(found->second);
        if (own.empty()) continue;
        ConsultantCategorySummary summary = summarize(category, std::move(own), seen);
        if (summary.totalBytes < 1) continue;
        breakdown.explainedBytes = checkedSum(breakdown.explainedBytes, summary.totalBytes);
        breakdown.categories.push_back(std::move(summary));
    }
    std::stable_sort(breakdown.categories.begin(), breakdown.categories.end(),
                     [](const auto& a, const auto& b) { return a.totalBytes > b.totalBytes; });
    breakdown.totalUsedBytes = totalUsedBytes;
    breakdown.unexplainedBytes = std::max<std::int64_t>(0, totalUsedBytes - breakdown.explainedBytes);
    return breakdown;
}

} // namespace vesko
