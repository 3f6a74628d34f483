#include "core/SignificanceEngine.h"

#include "base/CheckedSum.h"
#include "base/Paths.h"
#include "core/GroupBuilders.h"
#include "core/PathOverlapIndex.h"
#include <algorithm>
#include <array>
#include <unordered_map>
#include <utility>

namespace vesko {
namespace {

constexpr std::string_view artifactsID = "project.artifacts";

bool isDiscovery(const CleanupGroup& group) { return group.id.starts_with("discover."); }

bool isProjectArtifacts(const CleanupGroup& group) {
    static constexpr std::array<std::string_view, 9> ids{
        artifactsID,           "project.nodeModules", "project.pods",
        "project.cargoTarget", "project.gradleBuild", "project.next",
        "project.nodeDist",    "project.nodeOut",     "project.nodeBuild"};
    return std::find(ids.begin(), ids.end(), group.id) != ids.end();
}

/// Whether an absolute path is in its cleaned form already, as nearly every path of a scan is.
bool isStandardized(std::string_view path) {
    if (!path.starts_with('/')) return false;
    for (std::size_t slash = 0; slash != std::string_view::npos;) {
        const std::size_t next = path.find('/', slash + 1);
        const std::string_view part =
            path.substr(slash + 1, next == std::string_view::npos ? next : next - slash - 1);
        if (part.empty() || part == "." || part == "..") return false;
        slash = next;
    }
    return true;
}

/// Gives the item's path in its cleaned form to `use`; a copy is made only where it is not clean already.
template <class Use> auto withStandardizedPath(const ScannableItem& item, Use use) {
    const std::string& path = item.url.path();
    return isStandardized(path) ? use(path) : use(standardizedPath(path));
}

PathOverlapIndex coveredPaths(const std::vector<CleanupGroup>& groups) {
    std::size_t count = 0;
    for (const CleanupGroup& group : groups)
        if (!isDiscovery(group)) count += group.items.size();
    PathOverlapIndex covered(count);
    for (const CleanupGroup& group : groups) {
        if (isDiscovery(group)) continue;
        for (const ScannableItem& item : group.items)
            withStandardizedPath(item, [&](std::string_view path) { covered.insert(path); });
    }
    return covered;
}

/// The items of a discovery group that nothing covers.
std::vector<ScannableItem> uncovered(const ItemList& items, const PathOverlapIndex& covered) {
    std::vector<ScannableItem> kept;
    kept.reserve(items.size());
    for (const ScannableItem& item : items)
        if (!withStandardizedPath(item, [&](std::string_view path) { return covered.overlaps(path); }))
            kept.push_back(item);
    return kept;
}

/// Of two items with the same URL the larger stays, of two equal ones the first.
std::vector<ScannableItem> withoutRepeatedURLs(std::vector<ScannableItem> items) {
    std::unordered_map<FileURL, std::size_t> places;
    places.reserve(items.size());
    std::vector<ScannableItem> kept;
    kept.reserve(items.size());
    for (ScannableItem& item : items) {
        const auto [place, isNew] = places.try_emplace(item.url, kept.size());
        if (isNew) {
            kept.push_back(std::move(item));
        } else if (item.size > kept[place->second].size) {
            kept[place->second] = std::move(item);
        }
    }
    return kept;
}

void sortByTotal(std::vector<CleanupGroup>& groups) {
    std::vector<std::pair<std::int64_t, CleanupGroup>> weighed;
    weighed.reserve(groups.size());
    for (CleanupGroup& group : groups) {
        const std::int64_t bytes = groupBytes(group);
        weighed.emplace_back(bytes, std::move(group));
    }
    std::stable_sort(weighed.begin(), weighed.end(),
                     [](const auto& a, const auto& b) { return a.first > b.first; });
    groups.clear();
    for (auto& [bytes, group] : weighed) groups.push_back(std::move(group));
}

} // namespace

ScanReport SignificanceEngine::evaluate(std::vector<CleanupGroup> groups, std::vector<std::string> errors,
                                        const DateSource& dates) const {
    groups = consolidateProjectArtifacts(removeCoveredDiscoveries(std::move(groups)));
    std::erase_if(groups, [](const CleanupGroup& group) { return group.items.empty(); });
    sortByTotal(groups);
    ScanReport report;
    report.foundTotalBytes = totalBytes(groups);
    report.groups = std::move(groups);
    report.errors = std::move(errors);
    report.date = dates.now();
    return report;
}

std::vector<CleanupGroup> removeCoveredDiscoveries(std::vector<CleanupGroup> groups) {
    const PathOverlapIndex covered = coveredPaths(groups);
    if (covered.empty()) return groups;
    std::vector<CleanupGroup> result;
    result.reserve(groups.size());
    for (CleanupGroup& group : groups) {
        if (!isDiscovery(group)) {
            result.push_back(std::move(group));
            continue;
        }
        std::vector<ScannableItem> kept = uncovered(group.items, covered);
        if (kept.empty()) continue;
        if (kept.size() == group.items.size()) {
            result.push_back(std::move(group));
        } else {
            result.push_back(withItems(group, ItemList(std::move(kept))));
        }
    }
    return result;
}

std::vector<CleanupGroup> consolidateProjectArtifacts(std::vector<CleanupGroup> groups) {
    std::size_t count = 0;
    for (const CleanupGroup& group : groups)
        if (isProjectArtifacts(group)) count += group.items.size();
    std::vector<ScannableItem> artifacts;
    artifacts.reserve(count);
    for (const CleanupGroup& group : groups)
        if (isProjectArtifacts(group))
            artifacts.insert(artifacts.end(), group.items.begin(), group.items.end());
    if (artifacts.empty()) return groups;
    std::erase_if(groups, isProjectArtifacts);
    groups.push_back(makeGroup(projectArtifactsMetadata(), withoutRepeatedURLs(std::move(artifacts))));
    return groups;
}

std::int64_t totalBytes(const std::vector<CleanupGroup>& groups) {
    std::int64_t sum = 0;
    for (const CleanupGroup& group : groups) sum = checkedSum(sum, groupBytes(group));
    return sum;
}

const GroupMetadata& projectArtifactsMetadata() {
    static const GroupMetadata metadata{std::string(artifactsID),
                                        "shippingbox",
                                        sections::development(),
                                        {"project"},
                                        RelevancePolicy::standard,
                                        "",
                                        Safety::revisar};
    return metadata;
}

} // namespace vesko
