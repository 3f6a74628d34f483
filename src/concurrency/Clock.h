#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

namespace vesko {

using Duration = std::chrono::nanoseconds;

// Names the time line of Instant: it never goes back and counts the time that the machine is asleep
// (CLOCK_BOOTTIME on Linux, mach_continuous_time on macOS). There is no now() here, so that code asks the
// Clock it was given and tests can step the time.
struct ContinuousClock {
    using duration = Duration;
    using rep = duration::rep;
    using period = duration::period;
    using time_point = std::chrono::time_point<ContinuousClock, duration>;
    static constexpr bool is_steady = true;
};

using Instant = ContinuousClock::time_point;

// Tells the time and calls back at a time. now() may be asked from any thread; at() and cancel() belong to
// the thread of the loop that the clock serves, and the callbacks run there, earliest first.
struct Clock {
    using Id = std::uint64_t; // never 0
    virtual ~Clock() = default;
    virtual Instant now() const = 0;
    // Calls back once, not before the instant, never from inside at() itself.
    virtual Id at(Instant instant, std::function<void()> callback) = 0;
    // After this the callback does not run any more. An id that has fired or is unknown is passed over.
    virtual void cancel(Id id) = 0;
};

} // namespace vesko
