#pragma once

#include "concurrency/Task.h"
#include "concurrency/Wakeup.h"

#include <algorithm>
#include <memory>
#include <optional>

namespace vesko {

// What sleepFor gives.
class Sleep {
public:
    explicit Sleep(Duration duration) : duration_(std::max(duration, Duration::zero())) {}

    bool await_ready() const noexcept { return false; }
    template <class Promise> bool await_suspend(std::coroutine_handle<Promise> sleeper) {
        return start(sleeper, sleeper.promise().context);
    }
    void await_resume();

private:
    bool start(std::coroutine_handle<> sleeper, const TaskContext& context);

    Duration duration_;
    std::shared_ptr<Wakeup> wakeup_; // none: the task was cancelled before
    Clock* clock_ = nullptr;
    Clock::Id timer_ = 0;
    std::optional<StopCallback> onStop_;
};

// Waits by the context's clock, the time asleep included. Throws Cancelled as soon as the task is cancelled,
// and takes its timer back then.
inline Sleep sleepFor(Duration duration) { return Sleep(duration); }

} // namespace vesko
