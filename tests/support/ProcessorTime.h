#pragma once
#include <chrono>
#include <ctime>

namespace vesko::testing {

/// What this process has worked so far. Limits are held against this instead of the wall clock, so that they
/// mean the same on a busy machine; something that hangs runs into the test's own time limit.
inline std::chrono::nanoseconds processorTime() {
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

/// How many times longer the same work may take than in an ordinary build: a sanitizer looks at every access.
#if __has_feature(thread_sanitizer) || __has_feature(address_sanitizer)
inline constexpr int slowness = 15;
#else
inline constexpr int slowness = 1;
#endif

} // namespace vesko::testing
