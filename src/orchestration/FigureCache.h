#pragma once
#include "core/CleanupGroup.h"
#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>

namespace vesko {

/// Keeps one figure a group until the group's items or the state that it depends on change, so that drawing
/// an unchanged list costs a look-up a row.
template <class Figure> class FigureCache {
public:
    /// The kept figure, or a fresh one. `state` counts the changes of everything else that the figure depends
    /// on.
    template <class Work> const Figure& of(const CleanupGroup& group, std::uint64_t state, Work work) {
        Kept& kept = kept_[group.id];
        if (!kept.isSet || kept.state != state || !kept.items.sharesMemory(group.items) ||
            kept.baselineSafety != group.baselineSafety || kept.baselineReason != group.baselineReason) {
            kept = Kept{true, state, group.items, group.baselineSafety, group.baselineReason, work()};
        }
        return kept.figure;
    }

    /// Forgets groups that are no longer listed.
    void keepOnly(const std::vector<CleanupGroup>& groups) {
        if (kept_.size() <= 2 * groups.size() + 16) return;
        std::unordered_map<std::string, Kept> left;
        for (const CleanupGroup& group : groups)
            if (auto found = kept_.find(group.id); found != kept_.end())
                left.emplace(group.id, std::move(found->second));
        kept_ = std::move(left);
    }

private:
    struct Kept {
        bool isSet = false;
        std::uint64_t state = 0;
        ItemList items;
        Safety baselineSafety = Safety::seguro;
        std::string baselineReason;
        Figure figure;
    };
    std::unordered_map<std::string, Kept> kept_;
};

} // namespace vesko
