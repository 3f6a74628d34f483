#include "orchestration/RemovalRelay.h"

#include "concurrency/HomeGate.h"

namespace vesko {

void RemovalRelay::report(std::int64_t bytesFreed) {
    bytes_.store(bytesFreed, std::memory_order_relaxed);
    const auto now = std::chrono::steady_clock::now();
    if (now - last_ < std::chrono::milliseconds(100) || isOnItsWay_.exchange(true)) return;
    last_ = now;
    postHome(home_, [self = shared_from_this()] {
        self->isOnItsWay_ = false;
        if (self->tell_) self->tell_(self->bytes_.load(std::memory_order_relaxed));
    });
}

} // namespace vesko
