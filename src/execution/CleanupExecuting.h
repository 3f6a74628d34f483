#pragma once
#include "core/CommandRunning.h"
#include "core/ScannableItem.h"
#include "execution/CleanupError.h"
#include "execution/Remover.h"
#include <expected>

namespace vesko {

/// Deletes one item from the machine, for good. Blocks until it is gone or has failed; a failure concerns
/// that item only. No confirmation and no undo at this level: whatever reaches it goes.
class CleanupExecuting {
public:
    virtual ~CleanupExecuting() = default;
    /// `runner` starts the tools; `progress` is told only while files are removed.
    virtual std::expected<void, CleanupError> deleteItem(const ScannableItem& item,
                                                         const CommandRunning& runner,
                                                         const RemovalProgress& progress = {}) const = 0;
};

} // namespace vesko
