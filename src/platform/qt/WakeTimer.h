#pragma once

#include "concurrency/Clock.h"

#include <functional>
#include <memory>

namespace vesko {

// Rings once in the Qt loop of the thread that made it, at an instant of the continuous time. When the
// machine was asleep at that instant it rings on waking: at once on Linux (a timerfd of CLOCK_BOOTTIME),
// within 30 seconds elsewhere, where the toolkit's timers stand still during sleep and have to look at the
// time again. It may ring early; the one who set it looks at the time.
class WakeTimer {
public:
    explicit WakeTimer(std::function<void()> onRing);
    WakeTimer(const WakeTimer&) = delete;
    WakeTimer& operator=(const WakeTimer&) = delete;
    ~WakeTimer();

    // Replaces what was set before.
    void set(Instant instant);
    void clear();

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace vesko
