#include "orchestration/CleanupViewModel.h"

#include "base/CheckedSum.h"
#include "base/Text.h"
#include "base/UUID.h"
#include "core/GroupBuilders.h"
#include "core/ProbeCatalog.h"
#include "enrichment/DisplayName.h"
#include "orchestration/ConsultantCategory.h"
#include <algorithm>
#include <array>
#include <utility>

namespace vesko {
namespace {

SegmentColor sectionColor(std::string_view sectionID) {
    static constexpr std::array<std::pair<std::string_view, SegmentColor>, 6> colors{{
        {"system", SegmentColor::purple},
        {"apps", SegmentColor::cyan},
        {"caches", SegmentColor::purple},
        {"development", SegmentColor::green},
        {"downloads", SegmentColor::pink},
        {"installers", SegmentColor::slate},
    }};
    for (const auto& [id, color] : colors)
        if (id == sectionID) return color;
    return SegmentColor::muted;
}

/// Looked up afresh, so that it follows the language whatever language the group was cached in.
std::string catalogTitle(const CleanupGroup& group) {
    return probeMetadataByID().contains(group.id) ? probeTitle(group.id) : group.title;
}

/// Families whose groups are known by what they are, and not by their single item.
bool keepsItsTitle(const CleanupGroup& group) {
    const std::string_view id = group.id;
    return id.starts_with("cache.") || id.starts_with("project.") || id.starts_with("docker.") ||
           group.providerID.rawValue == "docker" || id == "logs.stale" || id == "trash";
}

} // namespace

std::vector<CleanupGroup> CleanupViewModel::filteredGroups() const {
    const std::string wanted = trimmedWhiteSpace(*searchText);
    if (wanted.empty()) return *groups;
    std::vector<CleanupGroup> found;
    for (const CleanupGroup& group : *groups)
        if (containsIgnoringCase(group.title, wanted) ||
            containsIgnoringCase(sectionTitle(group.section.id), wanted))
            found.push_back(group);
    return found;
}

std::vector<CleanupSectionEntry> CleanupViewModel::cleanupSections() const {
    std::vector<CleanupSectionEntry> entries;
    for (CleanupGroup& group : filteredGroups()) {
        if (groupFigures(group).totalBytes <= 0) continue;
        const auto known =
            std::find_if(entries.begin(), entries.end(),
                         [&](const CleanupSectionEntry& entry) { return entry.section == group.section; });
        CleanupSectionEntry& entry =
            known == entries.end() ? entries.emplace_back(CleanupSectionEntry{group.section, {}}) : *known;
        entry.groups.push_back(std::move(group));
    }
    std::stable_sort(entries.begin(), entries.end(),
                     [](const auto& a, const auto& b) { return a.section.sortIndex < b.section.sortIndex; });
    return entries;
}

std::optional<std::string> CleanupViewModel::firstGroupIDOfSection(std::string_view sectionID) const {
    for (const CleanupSectionEntry& entry : cleanupSections())
        if (entry.section.id == sectionID) return entry.groups.front().id;
    return std::nullopt;
}

std::optional<std::string>
CleanupViewModel::firstGroupIDOfCategory(std::string_view consultantCategoryID) const {
    const ConsultantCategory* category = consultantCategory(consultantCategoryID);
    if (!category) return std::nullopt;
    for (const CleanupGroup& group : *groups) {
        const bool isIn = std::find(category->probeIDs.begin(), category->probeIDs.end(), group.id) !=
                          category->probeIDs.end();
        if (isIn && groupFigures(group).totalBytes > 0) return group.id;
    }
    return std::nullopt;
}

std::vector<StorageSegment> CleanupViewModel::sectionSegments() const {
    std::vector<StorageSegment> segments;
    for (const CleanupSectionEntry& entry : cleanupSections()) {
        std::int64_t bytes = 0;
        for (const CleanupGroup& group : entry.groups)
            bytes = checkedSum(bytes, groupFigures(group).totalBytes);
        const std::string& id = entry.section.id;
        segments.push_back({id, sectionTitle(id), bytes, sectionColor(id), true});
    }
    return segments;
}

std::string CleanupViewModel::displayTitle(const CleanupGroup& group) const {
    if (!keepsItsTitle(group) && group.items.size() == 1) return itemTitle(group.items.front(), group);
    return catalogTitle(group);
}

std::string CleanupViewModel::itemTitle(const ScannableItem& item, const CleanupGroup& group) const {
    if (!group.id.starts_with("cache.")) return resolve(item, &group).friendlyName;
    std::string title = catalogTitle(group);
    if (group.items.size() < 2) return title;
    const std::optional<std::string> hint = cacheLocationHint(item.url);
    return hint ? title + " · " + *hint : title;
}

ResolvedEnrichment CleanupViewModel::resolve(const ScannableItem& item, const CleanupGroup* group) const {
    return parts_.enrichmentStore->resolve(item, group, *analyzingKeys, *aiDiscoveredURLs);
}

ResolvedEnrichment CleanupViewModel::resolveGroup(const CleanupGroup& group) const {
    const GroupVerdict& verdict =
        verdicts_.of(group, verdictRevision(), [&] { return workOutVerdict(group); });
    return {displayTitle(group), verdict.safety,      verdict.reason,
            verdict.isAIRefined, verdict.isAnalyzing, verdict.isAIDiscovered};
}

/// The verdicts of the items without their names, which a group's row does not show.
GroupVerdict CleanupViewModel::workOutVerdict(const CleanupGroup& group) const {
    GroupVerdict verdict = beginVerdict(group);
    continueVerdict(verdict, group, 0, group.items.size());
    return verdict;
}

GroupVerdict CleanupViewModel::beginVerdict(const CleanupGroup& group) const {
    return {group.baselineSafety, group.baselineReason, false, false, false};
}

void CleanupViewModel::continueVerdict(GroupVerdict& verdict, const CleanupGroup& group, std::size_t from,
                                       std::size_t count) const {
    const EnrichmentEntries& entries = parts_.enrichmentStore->entries();
    const Enrichment* riskiest = nullptr;
    const std::size_t end = std::min(group.items.size(), from + count);
    for (std::size_t i = from; i < end; ++i) {
        const ScannableItem& item = group.items[i];
        const auto entry = entries.find(item.enrichmentKey);
        if (entry != entries.end()) {
            if (entry->second.safety > verdict.safety) {
                riskiest = &entry->second;
                verdict.safety = riskiest->safety;
            }
            verdict.isAIRefined = verdict.isAIRefined || entry->second.source == EnrichmentSource::model;
        }
        verdict.isAnalyzing =
            verdict.isAnalyzing || (!analyzingKeys->empty() && analyzingKeys->contains(item.enrichmentKey));
        verdict.isAIDiscovered =
            verdict.isAIDiscovered || (!aiDiscoveredURLs->empty() && aiDiscoveredURLs->contains(item.url));
    }
    if (riskiest) verdict.reason = riskiest->reason;
}

void CleanupViewModel::requestScrollToCategory(std::string categoryID) {
    pendingConsultantCategoryID = std::move(categoryID);
    scrollToConsultantCategoryPending = true;
    scrollToConsultantCategoryTrigger = newUUID();
}

} // namespace vesko
