#pragma once

#include "concurrency/Task.h"

#include <coroutine>
#include <exception>
#include <utility>

namespace vesko {

// The outermost coroutine of a spawned task or of a group's child: nobody awaits it, and its frame frees
// itself at its end. Its body catches everything.
class Detached {
public:
    struct promise_type {
        TaskContext context;
        Detached get_return_object() {
            return Detached(std::coroutine_handle<promise_type>::from_promise(*this));
        }
        std::suspend_always initial_suspend() const noexcept { return {}; }
        std::suspend_never final_suspend() const noexcept { return {}; }
        void return_void() const noexcept {}
        [[noreturn]] void unhandled_exception() const noexcept { std::terminate(); }
    };

    // Begins on the home thread, at the earliest with the next turn of its loop.
    void start(TaskContext context) const {
        Executor& home = *context.home;
        handle_.promise().context = std::move(context);
        home.post([handle = handle_] { handle.resume(); });
    }

private:
    explicit Detached(std::coroutine_handle<promise_type> handle) : handle_(handle) {}
    std::coroutine_handle<promise_type> handle_;
};

// Awaits the task that a callable gives and keeps how it ended.
template <class T, class F> Task<void> captureTask(F& body, Outcome<T>& outcome) {
    try {
        if constexpr (std::is_void_v<T>) {
            co_await body();
            outcome.succeed();
        } else {
            T value = co_await body();
            outcome.succeed(std::move(value));
        }
    } catch (...) {
        outcome.fail(std::current_exception());
    }
}

} // namespace vesko
