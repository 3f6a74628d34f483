#include "core/SignificanceEngine.h"

#include "base/CheckedSum.h"
#include "base/Paths.h"
#include "core/GroupBuilders.h"
#include "core/PathOverlapIndex.h"
#include <algorithm>
#include <array>
#include <deque>
#include <string>
#include <string_view>
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

/// Calls for what the items a little behind this one will be looked at for, each a step after the one that
/// leads to it: the item, the place that says where its path's bytes are, the bytes.
void fetchAhead(const ItemList& items, std::size_t index) {
    constexpr std::size_t farthest = 48;
    constexpr std::size_t far = 24;
    constexpr std::size_t near = 8;
    if (index + farthest < items.size()) __builtin_prefetch(&items[index + farthest]);
    if (index + far < items.size()) __builtin_prefetch(&items[index + far].url.path());
    if (index + near >= items.size()) return;
    const std::string& path = items[index + near].url.path();
    __builtin_prefetch(path.data());
    __builtin_prefetch(path.data() + path.size());
}

/// Paths in their cleaned form where an item's own is none. What was added stays where it is.
using CleanedPaths = std::deque<std::string>;

/// Hands the items' paths in their cleaned form to `use(first, paths)`, `first` being the place of the first
/// of them. A few at a time, so that their bytes are still near when they are looked at again; a copy is made
/// only of one that is not clean already, in `cleaned`.
template <class Use> void withStandardizedPaths(const ItemList& items, CleanedPaths& cleaned, Use use) {
    constexpr std::size_t few = 256;
    std::vector<std::string_view> paths;
    for (std::size_t first = 0; first < items.size(); first += paths.size()) {
        paths.clear();
        for (std::size_t index = first; index < std::min(first + few, items.size()); ++index) {
            fetchAhead(items, index);
            const std::string& path = items[index].url.path();
            paths.emplace_back(isStandardized(path) ? path : cleaned.emplace_back(standardizedPath(path)));
        }
        use(first, paths);
    }
}

/// The paths of all items that are no discoveries. Good as long as the groups' items live.
struct CoveredPaths {
    CleanedPaths cleaned;
    PathOverlapIndex index;
};

CoveredPaths coveredPaths(const std::vector<CleanupGroup>& groups) {
    std::size_t count = 0;
    for (const CleanupGroup& group : groups)
        if (!isDiscovery(group)) count += group.items.size();
    CoveredPaths covered{{}, PathOverlapIndex(count)};
    for (const CleanupGroup& group : groups) {
        if (isDiscovery(group)) continue;
        withStandardizedPaths(
            group.items, covered.cleaned,
            [&](std::size_t, const std::vector<std::string_view>& paths) { covered.index.insert(paths); });
    }
    return covered;
}

/// The items of a discovery group that nothing covers.
std::vector<ScannableItem> uncovered(const ItemList& items, const PathOverlapIndex& covered) {
    std::vector<ScannableItem> kept;
    kept.reserve(items.size());
    CleanedPaths cleaned;
    withStandardizedPaths(items, cleaned, [&](std::size_t first, const std::vector<std::string_view>& paths) {
        const std::vector<bool> isCovered = covered.overlaps(paths);
        // What a copy waits for longest is the key's text; here they are called for all together.
        for (std::size_t index = 0; index < paths.size(); ++index)
            if (!isCovered[index]) __builtin_prefetch(items[first + index].enrichmentKey.rawValue.data());
        for (std::size_t index = 0; index < paths.size(); ++index)
            if (!isCovered[index]) kept.push_back(items[first + index]);
    });
    return kept;
}

/// Looks a URL up where it lies, without a copy.
struct HashOfURL {
    std::size_t operator()(const FileURL* url) const noexcept { return url->hash(); }
};
struct SameURL {
    bool operator()(const FileURL* a, const FileURL* b) const noexcept { return *a == *b; }
};

/// All items of project artifacts; of two with the same URL the larger stays, of two equal ones the first.
std::vector<ScannableItem> projectArtifacts(const std::vector<CleanupGroup>& groups) {
    std::size_t count = 0;
    for (const CleanupGroup& group : groups)
        if (isProjectArtifacts(group)) count += group.items.size();
    std::unordered_map<const FileURL*, std::size_t, HashOfURL, SameURL> places;
    places.reserve(count);
    std::vector<const ScannableItem*> kept;
    kept.reserve(count);
    for (const CleanupGroup& group : groups) {
        if (!isProjectArtifacts(group)) continue;
        for (std::size_t index = 0; index < group.items.size(); ++index) {
            fetchAhead(group.items, index);
            const ScannableItem& item = group.items[index];
            const auto [place, isNew] = places.try_emplace(&item.url, kept.size());
            if (isNew)
                kept.push_back(&item);
            else if (item.size > kept[place->second]->size)
                kept[place->second] = &item;
        }
    }
    std::vector<ScannableItem> items;
    items.reserve(kept.size());
    for (const ScannableItem* item : kept) items.push_back(*item);
    return items;
}

/// Largest first; gives the sum of all.
std::int64_t sortByTotal(std::vector<CleanupGroup>& groups) {
    std::int64_t total = 0;
    std::vector<std::pair<std::int64_t, CleanupGroup>> weighed;
    weighed.reserve(groups.size());
    for (CleanupGroup& group : groups) {
        const std::int64_t bytes = groupBytes(group);
        total = checkedSum(total, bytes);
        weighed.emplace_back(bytes, std::move(group));
    }
    std::stable_sort(weighed.begin(), weighed.end(),
                     [](const auto& a, const auto& b) { return a.first > b.first; });
    groups.clear();
    for (auto& [bytes, group] : weighed) groups.push_back(std::move(group));
    return total;
}

} // namespace

ScanReport SignificanceEngine::evaluate(std::vector<CleanupGroup> groups, std::vector<std::string> errors,
                                        const DateSource& dates) const {
    groups = consolidateProjectArtifacts(removeCoveredDiscoveries(std::move(groups)));
    std::erase_if(groups, [](const CleanupGroup& group) { return group.items.empty(); });
    ScanReport report;
    report.foundTotalBytes = sortByTotal(groups);
    report.groups = std::move(groups);
    report.errors = std::move(errors);
    report.date = dates.now();
    return report;
}

std::vector<CleanupGroup> removeCoveredDiscoveries(std::vector<CleanupGroup> groups) {
    const CoveredPaths covered = coveredPaths(groups);
    if (covered.index.empty()) return groups;
    std::vector<CleanupGroup> result;
    result.reserve(groups.size());
    for (CleanupGroup& group : groups) {
        if (!isDiscovery(group)) {
            result.push_back(std::move(group));
            continue;
        }
        std::vector<ScannableItem> kept = uncovered(group.items, covered.index);
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
    std::vector<ScannableItem> artifacts = projectArtifacts(groups);
    if (artifacts.empty()) return groups;
    std::erase_if(groups, isProjectArtifacts);
    groups.push_back(makeGroup(projectArtifactsMetadata(), std::move(artifacts)));
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
