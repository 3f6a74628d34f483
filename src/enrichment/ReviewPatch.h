#pragma once
#include "base/FileURL.h"
#include "core/GroupMetadata.h"
#include "core/ScannableItem.h"
#include <string>
#include <variant>

namespace vesko {

/// One decision of the review pass, and the only way in which it changes the list.
struct ReviewPatch {
    /// The item is to leave the list. Nobody makes this one and applying it does nothing; it keeps the
    /// interface at its three actions.
    struct Demote {
        FileURL url;
        friend bool operator==(const Demote&, const Demote&) = default;
    };
    /// The item joins the group that the metadata describes.
    struct Promote {
        ScannableItem item;
        GroupMetadata metadata;
        friend bool operator==(const Promote&, const Promote&) = default;
    };
    /// The item moves from one group to another.
    struct Reclassify {
        ScannableItem item;
        std::string fromGroupID;
        GroupMetadata to;
        friend bool operator==(const Reclassify&, const Reclassify&) = default;
    };
    std::variant<Demote, Promote, Reclassify> value;

    static ReviewPatch demote(FileURL url) { return {Demote{std::move(url)}}; }
    static ReviewPatch promote(ScannableItem item, GroupMetadata metadata) {
        return {Promote{std::move(item), std::move(metadata)}};
    }
    static ReviewPatch reclassify(ScannableItem item, std::string fromGroupID, GroupMetadata to) {
        return {Reclassify{std::move(item), std::move(fromGroupID), std::move(to)}};
    }

    friend bool operator==(const ReviewPatch&, const ReviewPatch&) = default;
};

} // namespace vesko
