#include "orchestration/CleanupViewModel.h"

#include "base/CheckedSum.h"
#include "core/GroupBuilders.h"
#include <utility>

namespace vesko {
namespace {

/// What can be measured and not deleted is never selected.
bool isSelectable(const ScannableItem& item) {
    static const EnrichmentKey unsupported = EnrichmentKey::unsupportedDockerObject();
    return item.enrichmentKey != unsupported;
}

TriState triState(std::int64_t selected, std::int64_t selectable) {
    if (selected == 0) return TriState::off;
    return selected == selectable ? TriState::on : TriState::mixed;
}

} // namespace

bool CleanupViewModel::isSafe(const ScannableItem& item, const CleanupGroup& group) const {
    const EnrichmentEntries& entries = parts_.enrichmentStore->entries();
    const auto entry = entries.find(item.enrichmentKey);
    return (entry == entries.end() ? group.baselineSafety : entry->second.safety) == Safety::seguro;
}

void CleanupViewModel::applyDefaultSelection() {
    std::size_t most = 0;
    for (const CleanupGroup& group : *groups) most += group.items.size();
    URLSet selected;
    selected.reserve(most);
    for (const CleanupGroup& group : *groups)
        for (const ScannableItem& item : group.items)
            if (isSelectable(item) && isSafe(item, group)) selected.insert(item.url);
    URLSet overridden;
    userOverriddenIDs.modify([&](URLSet& ids) { ids.swap(overridden); });
    selectedItemIDs.modify([&](URLSet& ids) { ids.swap(selected); });
    discard(std::move(selected));
    discard(std::move(overridden));
}

/// Frees a large set on a worker: 100,000 entries take longer than a frame.
void CleanupViewModel::discard(URLSet set) {
    if (set.size() < 1000) return;
    parts_.tasks.workers->post([kept = std::make_shared<URLSet>(std::move(set))] { kept->clear(); });
}

void CleanupViewModel::applyDefaultSelectionToNewGroups() {
    selectedItemIDs.modify([&](URLSet& ids) {
        for (const CleanupGroup& group : *groups) {
            if (validationPreviousGroupIDs_.contains(group.id)) continue;
            for (const ScannableItem& item : group.items)
                if (isSelectable(item) && isSafe(item, group)) ids.insert(item.url);
        }
    });
}

void CleanupViewModel::reapplySelection(const std::unordered_set<EnrichmentKey>& keys) {
    reconsider(keys, *groups);
}

void CleanupViewModel::reconsider(const std::unordered_set<EnrichmentKey>& keys,
                                  const std::vector<CleanupGroup>& list) {
    if (keys.empty()) return;
    // Mostly a single key at a time: comparing is cheaper than hashing every item's key.
    const auto isMeant = [&](const EnrichmentKey& key) {
        return keys.size() == 1 ? *keys.begin() == key : keys.contains(key);
    };
    std::vector<std::pair<FileURL, bool>> decisions;
    for (const CleanupGroup& group : list)
        for (const ScannableItem& item : group.items)
            if (isMeant(item.enrichmentKey) && isSelectable(item) && !userOverriddenIDs->contains(item.url))
                decisions.emplace_back(item.url, isSafe(item, group));
    if (decisions.empty()) return;
    selectedItemIDs.modify([&](URLSet& ids) {
        for (const auto& [url, isSelected] : decisions) {
            if (isSelected)
                ids.insert(url);
            else
                ids.erase(url);
        }
    });
}

/// Every choice of the person comes through here.
void CleanupViewModel::setAll(bool isSelected, const std::vector<ItemList>& lists) {
    if (!mayTouchSelection()) return;
    std::size_t most = 0;
    for (const ItemList& items : lists) most += items.size();
    const auto change = [&](URLSet& ids, bool isIn) {
        if (isIn && most > 1000) ids.reserve(ids.size() + most);
        for (const ItemList& items : lists) {
            for (const ScannableItem& item : items) {
                if (!isSelectable(item)) continue;
                if (isIn)
                    ids.insert(item.url);
                else
                    ids.erase(item.url);
            }
        }
    };
    userOverriddenIDs.modify([&](URLSet& ids) { change(ids, true); });
    selectedItemIDs.modify([&](URLSet& ids) { change(ids, isSelected); });
}

void CleanupViewModel::setSelected(bool isSelected, const ScannableItem& item) {
    if (isSelectable(item)) setAll(isSelected, {ItemList{item}});
}

TriState CleanupViewModel::selectionState(const ItemList& items) const {
    return selectionState(items.values());
}

TriState CleanupViewModel::selectionState(const std::vector<ScannableItem>& items) const {
    std::int64_t selectable = 0;
    std::int64_t selected = 0;
    for (const ScannableItem& item : items) {
        if (!isSelectable(item)) continue;
        ++selectable;
        if (selectedItemIDs->contains(item.url)) ++selected;
    }
    return triState(selected, selectable);
}

void CleanupViewModel::toggleGroup(const CleanupGroup& group) {
    setAll(groupFigures(group).selection != TriState::on, {group.items});
}

void CleanupViewModel::toggleSection(const CleanupSection& section) {
    std::vector<ItemList> lists;
    bool isAllSelected = true; // of what can be selected, and there is some
    bool isSelectable = false;
    for (const CleanupGroup& group : *groups) {
        if (group.section != section) continue;
        lists.push_back(group.items);
        const GroupFigures figures = groupFigures(group);
        if (!figures.isSelectable) continue;
        isSelectable = true;
        isAllSelected = isAllSelected && figures.selection == TriState::on;
    }
    if (isSelectable) setAll(!isAllSelected, lists);
}

std::vector<ScannableItem> CleanupViewModel::sectionItems(const CleanupSection& section) const {
    std::vector<ScannableItem> items;
    for (const CleanupGroup& group : *groups)
        if (group.section == section) items.insert(items.end(), group.items.begin(), group.items.end());
    return items;
}

GroupFigures CleanupViewModel::groupFigures(const CleanupGroup& group) const {
    return figures_.of(group, selectionRevision(), [&] { return workOutFigures(group); });
}

GroupFigures CleanupViewModel::workOutFigures(const CleanupGroup& group) const {
    GroupFigures figures;
    std::int64_t selectable = 0;
    std::int64_t selectedOfThese = 0;
    for (const ScannableItem& item : group.items) {
        ++figures.itemCount;
        figures.totalBytes = checkedSum(figures.totalBytes, item.size);
        if (isSelectable(item)) ++selectable;
        if (!selectedItemIDs->contains(item.url)) continue;
        ++figures.selectedCount;
        figures.selectedBytes = checkedSum(figures.selectedBytes, item.size);
        if (isSelectable(item)) ++selectedOfThese;
    }
    figures.isSelectable = selectable > 0;
    figures.selection = triState(selectedOfThese, selectable);
    return figures;
}

std::int64_t CleanupViewModel::selectedBytes() const {
    std::int64_t sum = 0;
    for (const CleanupGroup& group : *groups) sum = checkedSum(sum, groupFigures(group).selectedBytes);
    return sum;
}

std::int64_t CleanupViewModel::selectedCount() const {
    std::int64_t count = 0;
    for (const CleanupGroup& group : *groups) count += groupFigures(group).selectedCount;
    return count;
}

std::int64_t CleanupViewModel::selectedGroupCount() const {
    std::int64_t count = 0;
    for (const CleanupGroup& group : *groups)
        if (groupFigures(group).selectedCount > 0) ++count;
    return count;
}

std::vector<CleanupGroup> CleanupViewModel::selectedGroups() const {
    std::vector<CleanupGroup> selected;
    for (const CleanupGroup& group : *groups) {
        const GroupFigures figures = groupFigures(group);
        if (figures.selectedCount == 0) continue;
        if (figures.selectedCount == figures.itemCount) {
            selected.push_back(group);
            continue;
        }
        std::vector<ScannableItem> items;
        items.reserve(static_cast<std::size_t>(figures.selectedCount));
        for (const ScannableItem& item : group.items)
            if (selectedItemIDs->contains(item.url)) items.push_back(item);
        selected.push_back(withItems(group, ItemList(std::move(items))));
    }
    return selected;
}

std::int64_t CleanupViewModel::recoverableBytes() const {
    std::int64_t sum = 0;
    for (const CleanupGroup& group : *groups) sum = checkedSum(sum, groupFigures(group).totalBytes);
    return sum;
}

std::optional<std::string> CleanupViewModel::largestGroupID() const {
    const CleanupGroup* largest = nullptr;
    for (const CleanupGroup& group : *groups)
        if (!largest || groupFigures(group).totalBytes > groupFigures(*largest).totalBytes) largest = &group;
    if (!largest) return std::nullopt;
    return largest->id;
}

} // namespace vesko
