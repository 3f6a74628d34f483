#include "platform/posix/ContinuousTime.h"

#include <chrono>
#include <ctime>

namespace vesko {

Instant continuousNow() {
    timespec now{};
    // clock_gettime(3) of macOS: goes on while the machine is asleep, as mach_continuous_time does.
    clock_gettime(CLOCK_MONOTONIC_RAW, &now);
    return Instant(std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec));
}

} // namespace vesko
