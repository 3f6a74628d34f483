#include "enrichment/ReviewedGroups.h"

#include "base/CheckedSum.h"
#include "base/Paths.h"
#include "core/GroupBuilders.h"
#include <algorithm>
#include <utility>

namespace vesko {

ReviewedGroups::ReviewedGroups(std::vector<CleanupGroup> groups, const std::vector<FileURL>& urls) {
    for (const FileURL& url : urls) places_.try_emplace(standardizedPath(url.path()));
    entries_.reserve(groups.size());
    for (CleanupGroup& group : groups) {
        const std::size_t index = entries_.size();
        for (std::size_t item = 0; item < group.items.size(); ++item) {
            const auto place = places_.find(standardizedPath(group.items[item].url.path()));
            if (place != places_.end()) place->second.push_back({index, item});
        }
        Entry entry;
        entry.bytes = groupBytes(group);
        entry.group = std::move(group);
        entries_.push_back(std::move(entry));
        order_.push_back(index);
    }
}

void ReviewedGroups::remove(const FileURL& url) {
    const std::string path = standardizedPath(url.path());
    std::unordered_set<std::size_t> emptied;
    if (const auto found = places_.find(path); found != places_.end()) {
        for (const Place& place : found->second) {
            Entry& entry = entries_[place.entry];
            if (!entry.gone.insert(place.item).second) continue;
            entry.bytes -= entry.group.items[place.item].size;
            if (entry.count() == 0) emptied.insert(place.entry);
        }
    }
    for (const std::size_t index : order_) {
        Entry& entry = entries_[index];
        const std::size_t erased = std::erase_if(entry.added, [&](const ScannableItem& item) {
            if (standardizedPath(item.url.path()) != path) return false;
            entry.bytes -= item.size;
            return true;
        });
        if (erased > 0 && entry.count() == 0) emptied.insert(index);
    }
    std::erase_if(order_, [&](std::size_t index) { return emptied.contains(index); });
}

Safety ReviewedGroups::add(const ScannableItem& item, const GroupMetadata& metadata) {
    Entry* entry = find(metadata.id);
    if (entry && holds(*entry, item.url)) return entry->group.baselineSafety;
    if (!entry) entry = &make(metadata);
    entry->group.baselineReason = probeReason(metadata.id);
    entry->group.subtitle = metadata.subtitle;
    entry->group.baselineSafety = metadata.baselineSafety;
    entry->added.push_back(item);
    entry->bytes = checkedSum(entry->bytes, item.size);
    std::stable_sort(order_.begin(), order_.end(),
                     [&](std::size_t a, std::size_t b) { return entries_[a].bytes > entries_[b].bytes; });
    return metadata.baselineSafety;
}

std::vector<CleanupGroup> ReviewedGroups::groups() const {
    std::vector<CleanupGroup> list;
    list.reserve(order_.size());
    for (const std::size_t index : order_) {
        const Entry& entry = entries_[index];
        if (entry.gone.empty() && entry.added.empty()) {
            list.push_back(entry.group);
            continue;
        }
        std::vector<ScannableItem> items;
        items.reserve(entry.count());
        for (std::size_t item = 0; item < entry.group.items.size(); ++item)
            if (!entry.gone.contains(item)) items.push_back(entry.group.items[item]);
        items.insert(items.end(), entry.added.begin(), entry.added.end());
        list.push_back(withItems(entry.group, ItemList(std::move(items))));
    }
    return list;
}

ReviewedGroups::Entry* ReviewedGroups::find(const std::string& groupID) {
    for (const std::size_t index : order_)
        if (entries_[index].group.id == groupID) return &entries_[index];
    return nullptr;
}

bool ReviewedGroups::holds(const Entry& entry, const FileURL& url) const {
    const auto isIt = [&](const ScannableItem& item) { return item.url == url; };
    if (std::any_of(entry.added.begin(), entry.added.end(), isIt)) return true;
    const auto found = places_.find(standardizedPath(url.path()));
    if (found == places_.end()) return false;
    return std::any_of(found->second.begin(), found->second.end(), [&](const Place& place) {
        return &entries_[place.entry] == &entry && !entry.gone.contains(place.item) &&
               isIt(entry.group.items[place.item]);
    });
}

ReviewedGroups::Entry& ReviewedGroups::make(const GroupMetadata& metadata) {
    Entry entry;
    entry.group.id = metadata.id;
    entry.group.title = probeTitle(metadata.id);
    entry.group.icon = metadata.icon;
    entry.group.section = metadata.section;
    entry.group.providerID = metadata.providerID;
    entry.group.relevancePolicy = metadata.relevancePolicy;
    order_.push_back(entries_.size());
    entries_.push_back(std::move(entry));
    return entries_.back();
}

} // namespace vesko
