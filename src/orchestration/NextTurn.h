#pragma once
#include "concurrency/Task.h"

namespace vesko {

/// What nextTurn() gives.
class NextTurn {
public:
    NextTurn() noexcept {}
    bool await_ready() const noexcept { return false; }
    template <class Promise> void await_suspend(std::coroutine_handle<Promise> waiting) const {
        waiting.promise().context.home->post([waiting] { waiting.resume(); });
    }
    void await_resume() const noexcept {}
};

/// Lets everything else that is ready on the home thread run first: long walks there wait for it now and
/// then.
inline NextTurn nextTurn() { return {}; }

} // namespace vesko
