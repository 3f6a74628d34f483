#pragma once

#include "concurrency/BlockingCall.h"
#include "concurrency/HomeGate.h"
#include "concurrency/Task.h"

namespace vesko {

// What offload gives. It holds the closure, so a named one is awaited where it was made; awaited once.
template <class F> class [[nodiscard]] Offload {
public:
    using Result = BlockingResult<F>;

    explicit Offload(F call) : call_(std::move(call)) {}
    Offload(const Offload&) = delete;
    Offload& operator=(const Offload&) = delete;

    bool await_ready() const noexcept { return false; }
    template <class Promise> void await_suspend(std::coroutine_handle<Promise> caller) {
        const TaskContext& context = caller.promise().context;
        context.workers->post([this, caller, home = context.home, stop = context.stop] {
            outcome_.capture([&] { return callBlocking(call_, stop); });
            postHome(*home, [caller] { caller.resume(); });
        });
    }
    Result await_resume() { return outcome_.take(); }

private:
    F call_;
    Outcome<Result> outcome_;
};

// Runs a blocking closure on a worker and resumes at home with its value or exception. The closure takes the
// task's StopToken or nothing. Cancelling does not cut it short: it looks at the token by itself, and the
// await lasts until it returns.
template <class F> auto offload(F call) { return Offload<F>(std::move(call)); }

} // namespace vesko
