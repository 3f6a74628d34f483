#pragma once
#include "core/CleanupGroup.h"
#include "core/GroupMetadata.h"
#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace vesko {

/// The list of groups while review patches are applied to it. The list is walked once at the start and each
/// changed group is written once at the end, however many patches there are.
class ReviewedGroups {
public:
    /// `urls` are those that remove() will be asked for.
    ReviewedGroups(std::vector<CleanupGroup> groups, const std::vector<FileURL>& urls);

    /// Takes every item at that place out of all groups, however its path is written; a group that loses its
    /// last item goes.
    void remove(const FileURL& url);
    /// Puts the item at the end of the group of that id, which takes on the metadata's safety and subtitle
    /// and the probe's reason; a missing group is made. A group that already has the URL stays as it is,
    /// otherwise the groups are put in order again. Gives the safety of the group that now holds the item.
    Safety add(const ScannableItem& item, const GroupMetadata& metadata);

    /// The list as it stands, the largest group first where something was added.
    std::vector<CleanupGroup> groups() const;

private:
    struct Entry {
        CleanupGroup group; ///< with the items that it came with
        std::unordered_set<std::size_t> gone;
        std::vector<ScannableItem> added;
        std::int64_t bytes = 0;

        std::size_t count() const { return group.items.size() - gone.size() + added.size(); }
    };
    struct Place {
        std::size_t entry;
        std::size_t item;
    };

    Entry* find(const std::string& groupID);
    bool holds(const Entry& entry, const FileURL& url) const;
    Entry& make(const GroupMetadata& metadata);

    std::vector<Entry> entries_;     // in the order in which they came: places name them by index
    std::vector<std::size_t> order_; // those that still stand, in list order
    std::unordered_map<std::string, std::vector<Place>>
        places_; // cleaned path to the items that came with it
};

} // namespace vesko
