#include "orchestration/DeletionRun.h"

#include "base/CheckedSum.h"
#include "base/Paths.h"
#include "core/GroupBuilders.h"
#include "execution/DockerDeletionTarget.h"
#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace vesko {
namespace {

/// Whether the item is an object inside a tool: its path only stands for it, so it is in no folder.
bool isToolObject(const EnrichmentKey& key) {
    constexpr std::string_view device = "simulator:";
    return (key.rawValue.starts_with(device) && key.rawValue.size() > device.size()) ||
           key == EnrichmentKey::unsupportedDockerObject() || DockerDeletionTarget::fromKey(key).has_value();
}

using VictimsByPath = std::unordered_map<std::string_view, std::size_t>;

} // namespace

DeletionRun::DeletionRun(std::vector<CleanupGroup> groups, const std::unordered_set<FileURL>& selected,
                         const std::unordered_set<FileURL>* onlyItems)
    : groups_(std::move(groups)) {
    for (std::size_t group = 0; group < groups_.size(); ++group) {
        const ItemList& items = groups_[group].items;
        for (std::size_t item = 0; item < items.size(); ++item) {
            const FileURL& url = items[item].url;
            if (selected.contains(url) && (!onlyItems || onlyItems->contains(url)))
                victims_.push_back({group, item});
        }
    }
}

void DeletionRun::prepare() {
    std::unordered_map<FileURL, std::size_t> byURL;
    std::vector<std::string> paths(victims_.size());
    VictimsByPath byPath;
    byURL.reserve(victims_.size());
    byPath.reserve(victims_.size());
    for (std::size_t index = 0; index < victims_.size(); ++index) {
        const ScannableItem& item = itemOf(victims_[index]);
        const auto [first, isFirst] = byURL.try_emplace(item.url, index);
        if (!isFirst) {
            victims_[index].sameAs = first->second;
            continue;
        }
        ++inAll_;
        bytesInAll_ = checkedSum(bytesInAll_, item.size);
        victims_[index].isToolObject = isToolObject(item.enrichmentKey);
        if (victims_[index].isToolObject) continue;
        paths[index] = standardizedPath(item.url.path());
        // Two ways of writing one path are one place.
        const auto [place, isNew] = byPath.try_emplace(paths[index], index);
        if (!isNew) victims_[index].inside = place->second;
    }
    for (std::size_t index = 0; index < victims_.size(); ++index) {
        const std::string_view path = paths[index];
        if (path.empty() || victims_[index].inside != none) continue;
        for (std::size_t slash = path.rfind('/'); slash != std::string_view::npos && slash > 0;
             slash = path.rfind('/', slash - 1)) {
            const auto found = byPath.find(path.substr(0, slash));
            if (found == byPath.end()) continue;
            victims_[index].inside = found->second;
            break;
        }
    }
}

const ScannableItem* DeletionRun::next() {
    for (; at_ < victims_.size(); ++at_) {
        Victim& victim = victims_[at_];
        if (isUnderWay_ || !isPassedOver(victim)) {
            isUnderWay_ = true;
            return &itemOf(victim);
        }
        markGone(victim);
        if (victim.sameAs != none) continue;
        ++deleted_;
        ++done_;
    }
    return nullptr;
}

std::vector<const ScannableItem*> DeletionRun::nextFew(std::size_t most) {
    std::vector<const ScannableItem*> few;
    if (const ScannableItem* first = next()) few.push_back(first);
    if (few.empty() || victims_[at_].isToolObject) return few;
    for (std::size_t index = at_ + 1; index < victims_.size() && few.size() < most; ++index) {
        const Victim& victim = victims_[index];
        if (victim.isToolObject || hangsOnOneSince(victim, at_)) break;
        if (!isPassedOver(victim)) few.push_back(&itemOf(victim));
    }
    return few;
}

void DeletionRun::succeeded() {
    Victim& victim = victims_[at_];
    markGone(victim);
    if (victim.sameAs == none) ++done_;
    ++deleted_;
    // What was removed inside it before has been counted.
    const std::int64_t freed = std::max<std::int64_t>(0, itemOf(victim).size - victim.freedInside);
    freed_ = checkedSum(freed_, freed);
    for (std::size_t outer = victim.inside; outer != none; outer = victims_[outer].inside)
        victims_[outer].freedInside += freed;
    isUnderWay_ = false;
    ++at_;
}

void DeletionRun::failed(const std::string& description) {
    const Victim& victim = victims_[at_];
    if (victim.sameAs == none) ++done_;
    errors_.push_back(escapedForDisplay(itemOf(victim).name()) + ": " + description);
    isUnderWay_ = false;
    ++at_;
}

std::vector<FileURL> DeletionRun::takeGoneURLs() { return std::exchange(gone_, {}); }

DeletionProgress DeletionRun::progress(std::int64_t bytesInside) const {
    DeletionProgress progress;
    progress.itemsDone = done_;
    progress.itemsInAll = inAll_;
    progress.bytesInAll = bytesInAll_;
    progress.bytesFreed = freed_;
    if (isUnderWay_) {
        const Victim& victim = victims_[at_];
        const std::int64_t most = std::max<std::int64_t>(0, itemOf(victim).size - victim.freedInside);
        progress.bytesFreed += std::clamp<std::int64_t>(bytesInside, 0, most);
    }
    return progress;
}

std::vector<CleanupGroup> DeletionRun::remainingGroups() const {
    std::vector<std::vector<bool>> isGone(groups_.size());
    for (const Victim& victim : victims_) {
        if (!victim.isGone) continue;
        std::vector<bool>& marks = isGone[victim.group];
        marks.resize(groups_[victim.group].items.size());
        marks[victim.item] = true;
    }
    std::vector<CleanupGroup> remaining;
    for (std::size_t group = 0; group < groups_.size(); ++group) {
        const ItemList& items = groups_[group].items;
        if (isGone[group].empty()) {
            if (!items.empty()) remaining.push_back(groups_[group]);
            continue;
        }
        std::vector<ScannableItem> kept;
        for (std::size_t item = 0; item < items.size(); ++item)
            if (!isGone[group][item]) kept.push_back(items[item]);
        if (!kept.empty()) remaining.push_back(withItems(groups_[group], ItemList(std::move(kept))));
    }
    return remaining;
}

bool DeletionRun::isInsideAGoneOne(const Victim& victim) const {
    for (std::size_t outer = victim.inside; outer != none; outer = victims_[outer].inside)
        if (victims_[outer].isGone) return true;
    return false;
}

/// Whether it is gone with one that was removed before.
bool DeletionRun::isPassedOver(const Victim& victim) const {
    return (victim.sameAs != none && victims_[victim.sameAs].isGone) || isInsideAGoneOne(victim);
}

/// Whether it goes with one of those from `first` on to itself, should that one go.
bool DeletionRun::hangsOnOneSince(const Victim& victim, std::size_t first) const {
    const auto isSince = [&](std::size_t other) {
        return other != none && other >= first && &victims_[other] < &victim;
    };
    if (isSince(victim.sameAs)) return true;
    for (std::size_t outer = victim.inside; outer != none; outer = victims_[outer].inside)
        if (isSince(outer)) return true;
    return false;
}

void DeletionRun::markGone(Victim& victim) {
    victim.isGone = true;
    gone_.push_back(itemOf(victim).url);
}

} // namespace vesko
