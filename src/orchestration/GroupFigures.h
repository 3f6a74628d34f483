#pragma once
#include "orchestration/TriState.h"
#include <cstdint>

namespace vesko {

/// What a group's row shows of sizes and selection.
struct GroupFigures {
    std::int64_t itemCount = 0;
    std::int64_t totalBytes = 0;
    std::int64_t selectedCount = 0;
    std::int64_t selectedBytes = 0;
    TriState selection = TriState::off; ///< items that can't be selected left aside
    bool isSelectable = false;          ///< whether any item may be selected

    friend bool operator==(const GroupFigures&, const GroupFigures&) = default;
};

} // namespace vesko
