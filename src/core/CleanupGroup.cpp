#include "core/CleanupGroup.h"

#include "base/CheckedSum.h"

namespace vesko {

std::int64_t groupBytes(const CleanupGroup& group) {
    std::int64_t sum = 0;
    for (const ScannableItem& item : group.items) sum = checkedSum(sum, item.size);
    return sum;
}

} // namespace vesko
