#include "platform/qt/ContinuousTime.h"

#include <chrono>
#include <ctime>

namespace vesko {

namespace {
#ifdef __APPLE__
// clock_gettime(3) of macOS: goes on while the machine is asleep, as mach_continuous_time does.
constexpr clockid_t continuousClock = CLOCK_MONOTONIC_RAW;
#else
// clock_getres(2): CLOCK_MONOTONIC that also includes any time that the system is suspended.
constexpr clockid_t continuousClock = CLOCK_BOOTTIME;
#endif
} // namespace

Instant continuousNow() {
    timespec now{};
    clock_gettime(continuousClock, &now);
    return Instant(std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec));
}

} // namespace vesko
