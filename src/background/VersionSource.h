#pragma once
#include "background/Updater.h"
#include "concurrency/Task.h"
#include <optional>

namespace vesko {

/// Knows what has been published.
class VersionSource {
public:
    virtual ~VersionSource() = default;
    /// The newest published version, also where it is the running one or an older one; nothing where that
    /// can't be found out. Ends in bounded time. Main thread, which it does not block.
    virtual Task<std::optional<NewerVersion>> newest() = 0;
};

} // namespace vesko
