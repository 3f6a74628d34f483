#include "core/GroupBuilders.h"

#include "base/FileSystem.h"
#include "base/StringCatalog.h"
#include "core/ItemOrder.h"
#include <algorithm>
#include <array>
#include <utility>

namespace vesko {
namespace {

/// The text of a key, or nothing when the catalog answers with the key itself.
std::optional<std::string> textOf(const std::string& key) {
    std::string text = localized(key);
    if (text == key) return std::nullopt;
    return text;
}

/// "cache.big_tool" reads "big tool"; an id of nothing but dots stays as it is.
std::string readableID(std::string_view id) {
    const std::size_t end = id.find_last_not_of('.');
    if (end == std::string_view::npos) return std::string(id);
    const std::size_t dot = id.find_last_of('.', end);
    const std::size_t begin = dot == std::string_view::npos ? 0 : dot + 1;
    std::string part(id.substr(begin, end + 1 - begin));
    std::replace(part.begin(), part.end(), '_', ' ');
    return part;
}

std::string_view subtitleKey(std::string_view groupID) {
    if (groupID.starts_with("installer")) return "probe.subtitle.installer";
    if (groupID == "apps.unused") return "probe.subtitle.app";
    return "probe.subtitle.item";
}

} // namespace

std::string probeTitle(std::string_view id) {
    const std::optional<std::string> text = textOf("probe." + std::string(id) + ".title");
    return text ? *text : readableID(id);
}

std::string probeReason(std::string_view id) {
    const std::optional<std::string> text = textOf("probe." + std::string(id) + ".reason");
    return text ? *text : localized("reason.reviewDefault");
}

std::string sectionTitle(std::string_view id) {
    static constexpr std::array<std::string_view, 6> known{"system",      "apps",      "caches",
                                                           "development", "downloads", "installers"};
    const bool isKnown = std::find(known.begin(), known.end(), id) != known.end();
    return localized("section." + std::string(isKnown ? id : "system"));
}

std::string groupSubtitle(std::string_view groupID, std::int64_t itemCount) {
    return localized(subtitleKey(groupID), itemCount);
}

CleanupGroup makeGroup(const GroupMetadata& metadata, std::vector<ScannableItem> items) {
    sortLargestFirst(items);
    CleanupGroup group;
    group.id = metadata.id;
    group.title = probeTitle(metadata.id);
    group.icon = metadata.icon;
    group.section = metadata.section;
    group.providerID = metadata.providerID;
    group.relevancePolicy = metadata.relevancePolicy;
    group.subtitle = groupSubtitle(metadata.id, static_cast<std::int64_t>(items.size()));
    group.items = ItemList(std::move(items));
    group.baselineSafety = metadata.baselineSafety;
    group.baselineReason = probeReason(metadata.id);
    return group;
}

ProbeResult makeResult(const GroupMetadata& metadata, std::vector<ScannableItem> items,
                       std::vector<std::string> errors) {
    std::erase_if(items, [](const ScannableItem& item) { return item.size <= 0; });
    ProbeResult result;
    result.errors = std::move(errors);
    if (!items.empty()) result.group = makeGroup(metadata, std::move(items));
    return result;
}

CleanupGroup withItems(const CleanupGroup& group, ItemList items) {
    CleanupGroup copy = group;
    copy.items = std::move(items);
    return copy;
}

std::vector<ScanReviewCandidate> reviewCandidates(const CleanupGroup& group) {
    if (!group.id.starts_with("discover.")) return {};
    std::vector<ScanReviewCandidate> candidates;
    candidates.reserve(group.items.size());
    for (const ScannableItem& item : group.items)
        candidates.push_back(
            {item.url, item.size, item.name(), item.isDirectory, contentModificationDate(item.url)});
    return candidates;
}

} // namespace vesko
