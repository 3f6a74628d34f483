#pragma once

#include "concurrency/Executor.h"

#include <atomic>
#include <coroutine>

namespace vesko {

// Resumes a suspended coroutine on its home, once, whoever calls first: shared by an awaiter and all that may
// wake it (a timer, a cancellation, a result). fire() may come from any thread, even before the awaiter has
// finished suspending: the coroutine is resumed only after arm() and one fire().
class Wakeup {
public:
    enum class Reason { Ready, Cancelled };

    Wakeup(std::coroutine_handle<> sleeper, Executor& home) : sleeper_(sleeper), home_(home) {}

    // True for the one call that counts.
    bool fire(Reason reason);
    // The last thing an awaiter does while suspending: from here on the coroutine may be running again.
    void arm();
    // Asked after resuming.
    bool cancelled() const { return reason_ == Reason::Cancelled; }

private:
    void resume();

    std::atomic<unsigned> marks_{0};
    std::coroutine_handle<> sleeper_;
    Executor& home_;
    Reason reason_ = Reason::Ready;
};

} // namespace vesko
