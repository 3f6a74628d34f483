#pragma once
#include "core/CleanupGroup.h"
#include "orchestration/DeletionProgress.h"
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace vesko {

/// The books of one deletion: what goes in which order, what has gone with something else, what stays, and
/// the sums. Deletes nothing itself.
class DeletionRun {
public:
    /// The selection at this moment, of which `onlyItems`, when given, names what counts.
    DeletionRun(std::vector<CleanupGroup> groups, const std::unordered_set<FileURL>& selected,
                const std::unordered_set<FileURL>* onlyItems);

    /// Works out which item lies in which. Blocks for a while with many items; before the first next().
    void prepare();

    /// What is to be removed next, in the order of the list. What is gone already is passed over: an item
    /// inside one that was removed counts as deleted with no bytes, another item of a removed URL does not
    /// count.
    /// The same again until it is told how that has ended.
    const ScannableItem* next();
    /// next() and, up to `most` in all, what it will give after it whatever becomes of those before: their
    /// removal can be handed over in one piece. What a tool deletes comes alone. Empty at the end.
    std::vector<const ScannableItem*> nextFew(std::size_t most);
    const CleanupGroup& groupOfNext() const { return groups_[victims_[at_].group]; }
    /// How what next() gave has ended.
    void succeeded();
    void failed(const std::string& description);

    std::int64_t deletedCount() const noexcept { return deleted_; }
    std::int64_t freedBytes() const noexcept { return freed_; }
    /// A line for each failure: the item's name and why.
    const std::vector<std::string>& errors() const noexcept { return errors_; }
    /// Gone since the last call: no longer selected.
    std::vector<FileURL> takeGoneURLs();
    /// The figures, `bytesInside` being what the present item has given back so far.
    DeletionProgress progress(std::int64_t bytesInside) const;
    /// The groups with what is left of them; a group of which nothing is left is not there.
    std::vector<CleanupGroup> remainingGroups() const;

private:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    struct Victim {
        std::size_t group;
        std::size_t item;
        std::size_t sameAs = none;    ///< the first victim of that URL, when it is another
        std::size_t inside = none;    ///< the nearest victim that it lies in
        std::int64_t freedInside = 0; ///< bytes counted for victims inside it
        bool isToolObject = false;
        bool isGone = false;
    };

    const ScannableItem& itemOf(const Victim& victim) const {
        return groups_[victim.group].items[victim.item];
    }
    bool isInsideAGoneOne(const Victim& victim) const;
    bool isPassedOver(const Victim& victim) const;
    bool hangsOnOneSince(const Victim& victim, std::size_t first) const;
    void markGone(Victim& victim);

    std::vector<CleanupGroup> groups_;
    std::vector<Victim> victims_;
    std::size_t at_ = 0;
    bool isUnderWay_ = false; ///< what at_ names was given by next() and has not ended
    std::int64_t done_ = 0;
    std::int64_t inAll_ = 0;
    std::int64_t bytesInAll_ = 0;
    std::int64_t deleted_ = 0;
    std::int64_t freed_ = 0;
    std::vector<std::string> errors_;
    std::vector<FileURL> gone_;
};

} // namespace vesko
