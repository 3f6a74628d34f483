#pragma once
#include "core/ScannableItem.h"
#include <cstdint>
#include <vector>

namespace vesko {

/// Finds applications by their last use.
class SpotlightQuerying {
public:
    virtual ~SpotlightQuerying() = default;
    /// The applications that were last used more than so many days ago, largest first. Blocks, perhaps for
    /// long; called on a worker. Cannot fail: what can't be found out is left out.
    virtual std::vector<ScannableItem> unusedApplications(std::int64_t olderThanDays) const = 0;
};

} // namespace vesko
