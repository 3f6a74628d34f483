#pragma once
#include "execution/CleanupExecuting.h"

namespace vesko {

/// Decides by the form of the item's key how it is deleted: a simulated device and a container object through
/// their tools, everything else as a file or folder. Has no state: several calls at once are safe.
class SystemCleanupExecutor final : public CleanupExecuting {
public:
    std::expected<void, CleanupError> deleteItem(const ScannableItem& item, const CommandRunning& runner,
                                                 const RemovalProgress& progress = {}) const override;
};

} // namespace vesko
