#pragma once
#include "core/CleanupGroup.h"
#include "orchestration/GroupVerdict.h"
#include "orchestration/TriState.h"
#include <cstdint>
#include <string>
#include <vector>

namespace vesko {

/// A stretch of rows of the list: a band's header alone, or a group's header with its items while it is
/// expanded.
struct ListBlock {
    enum class Kind { band, group };

    Kind kind = Kind::band;
    std::string key; ///< tells blocks apart, also two groups of the same id
    CleanupSection section;
    CleanupGroup group; ///< of a band: empty
    std::int64_t bytes = 0;
    TriState selection = TriState::off; ///< of a band: of all its groups, also those that a search hides
    bool isSelectable = false;          ///< whether any item may be selected
    bool isFirst = false;               ///< the first or last group of its band
    bool isLast = false;

    bool isExpanded = false;
    /// The items that have rows now, none while collapsed; they point into the group's list.
    std::vector<const ScannableItem*> shown;
    int firstRow = 0;

    // Of a group whose verdict is worked out in pieces.
    GroupVerdict verdict;     ///< what is shown: the last that was finished, at first the group's baseline
    GroupVerdict nextVerdict; ///< what is being worked out
    std::size_t judgedItems = 0;
    bool isBeingJudged = false;

    int rowCount() const noexcept { return 1 + static_cast<int>(shown.size()); }
};

} // namespace vesko
