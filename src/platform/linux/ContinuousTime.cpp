#include "platform/posix/ContinuousTime.h"

#include <chrono>
#include <ctime>

namespace vesko {

Instant continuousNow() {
    timespec now{};
    // clock_getres(2): CLOCK_MONOTONIC that also includes any time that the system is suspended.
    clock_gettime(CLOCK_BOOTTIME, &now);
    return Instant(std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec));
}

} // namespace vesko
