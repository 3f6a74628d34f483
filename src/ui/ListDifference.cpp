#include "ui/ListDifference.h"
#include <algorithm>
#include <unordered_map>

namespace vesko {

namespace {

constexpr std::size_t none = static_cast<std::size_t>(-1);

/// Which of `places` (none aside) belong to a longest increasing subsequence.
std::vector<bool> longestIncreasing(const std::vector<std::size_t>& places) {
    std::vector<std::size_t> tails; // index of the last element of the best subsequence of each length
    std::vector<std::size_t> before(places.size(), none);
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (places[i] == none) continue;
        const auto at =
            std::lower_bound(tails.begin(), tails.end(), places[i],
                             [&](std::size_t tail, std::size_t value) { return places[tail] < value; });
        if (at != tails.begin()) before[i] = *(at - 1);
        if (at == tails.end()) {
            tails.push_back(i);
        } else {
            *at = i;
        }
    }
    std::vector<bool> kept(places.size(), false);
    for (std::size_t i = tails.empty() ? none : tails.back(); i != none; i = before[i]) kept[i] = true;
    return kept;
}

/// The stretches of `marks` that are false.
std::vector<ListDifference::Range> gaps(const std::vector<bool>& marks) {
    std::vector<ListDifference::Range> ranges;
    for (std::size_t i = 0; i < marks.size(); ++i) {
        if (marks[i]) continue;
        if (!ranges.empty() && ranges.back().from + ranges.back().count == i) {
            ++ranges.back().count;
        } else {
            ranges.push_back({i, 1});
        }
    }
    return ranges;
}

} // namespace

std::optional<ListDifference> listDifference(const std::vector<const ScannableItem*>& old,
                                             const std::vector<const ScannableItem*>& wanted,
                                             std::size_t mostRanges) {
    std::unordered_map<FileURL, std::size_t> placeInOld;
    placeInOld.reserve(old.size());
    for (std::size_t i = 0; i < old.size(); ++i) {
        if (!placeInOld.emplace(old[i]->url, i).second) return std::nullopt;
    }
    std::vector<std::size_t> places(wanted.size(), none);
    std::vector<bool> taken(old.size(), false);
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        const auto found = placeInOld.find(wanted[i]->url);
        if (found == placeInOld.end()) continue;
        if (taken[found->second]) return std::nullopt;
        taken[found->second] = true;
        places[i] = found->second;
    }

    const std::vector<bool> keptInWanted = longestIncreasing(places);
    std::vector<bool> keptInOld(old.size(), false);
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        if (keptInWanted[i]) keptInOld[places[i]] = true;
    }
    ListDifference difference{.removed = gaps(keptInOld), .inserted = gaps(keptInWanted)};
    if (difference.removed.size() + difference.inserted.size() > mostRanges) return std::nullopt;
    std::reverse(difference.removed.begin(), difference.removed.end());
    return difference;
}

} // namespace vesko
