#pragma once
#include <cstdint>
#include <string>

namespace vesko {

/// How far a running deletion has come; told at least five times a second, also inside one large item.
struct DeletionProgress {
    std::int64_t itemsDone = 0;
    std::int64_t itemsInAll = 0;
    std::int64_t bytesFreed = 0; ///< so far, what lies inside the present item included
    std::int64_t bytesInAll = 0; ///< what the selection was measured at
    std::string itemName;        ///< the present item's, fit to be shown

    friend bool operator==(const DeletionProgress&, const DeletionProgress&) = default;
};

} // namespace vesko
