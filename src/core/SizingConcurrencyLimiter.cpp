#include "core/SizingConcurrencyLimiter.h"

namespace vesko {

void SizingConcurrencyLimiter::acquire() {
    std::unique_lock lock(mutex_);
    freed_.wait(lock, [this] { return free_ > 0; });
    --free_;
}

void SizingConcurrencyLimiter::release() {
    {
        const std::lock_guard lock(mutex_);
        ++free_;
    }
    freed_.notify_one();
}

} // namespace vesko
