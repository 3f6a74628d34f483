#pragma once

#include "concurrency/Cancelled.h"
#include "concurrency/Outcome.h"
#include "concurrency/TaskContext.h"

#include <coroutine>
#include <utility>

namespace vesko {

template <class T> class TaskPromise;

// A coroutine on its context's home thread. It starts when it is awaited, inherits the awaiting task's
// context, and hands its value or exception to the one who awaits it. Awaited once.
//
// A compiler lesson that our lint holds: await where a variable is declared, assigned or returned, never
// inside a condition, and never with a temporary closure or aggregate inside the awaited expression.
template <class T = void> class [[nodiscard]] Task {
public:
    using promise_type = TaskPromise<T>;
    using value_type = T;
    using Handle = std::coroutine_handle<promise_type>;

    explicit Task(Handle handle) : handle_(handle) {}
    Task(Task&& other) noexcept : handle_(std::exchange(other.handle_, {})) {}
    Task& operator=(Task&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~Task() {
        if (handle_) handle_.destroy();
    }

    struct Awaiter {
        Handle handle;
        bool await_ready() const noexcept { return false; }
        template <class Promise> Handle await_suspend(std::coroutine_handle<Promise> parent) const {
            handle.promise().context = parent.promise().context;
            handle.promise().continuation = parent;
            return handle;
        }
        T await_resume() const { return handle.promise().outcome.take(); }
    };
    Awaiter operator co_await() const noexcept { return {handle_}; }

private:
    Handle handle_;
};

// What the promises of all tasks have in common.
class TaskPromiseBase {
public:
    struct ResumeParent {
        bool await_ready() const noexcept { return false; }
        template <class Promise>
        std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> ended) const noexcept {
            return ended.promise().continuation;
        }
        void await_resume() const noexcept {}
    };
    std::suspend_always initial_suspend() const noexcept { return {}; }
    ResumeParent final_suspend() const noexcept { return {}; }

    TaskContext context;
    std::coroutine_handle<> continuation = std::noop_coroutine();
};

template <class T> class TaskPromise : public TaskPromiseBase {
public:
    Task<T> get_return_object() { return Task<T>(std::coroutine_handle<TaskPromise>::from_promise(*this)); }
    template <class U = T> void return_value(U&& value) { outcome.succeed(std::forward<U>(value)); }
    void unhandled_exception() noexcept { outcome.fail(std::current_exception()); }

    Outcome<T> outcome;
};

template <> class TaskPromise<void> : public TaskPromiseBase {
public:
    Task<void> get_return_object() {
        return Task<void>(std::coroutine_handle<TaskPromise>::from_promise(*this));
    }
    void return_void() { outcome.succeed(); }
    void unhandled_exception() noexcept { outcome.fail(std::current_exception()); }

    Outcome<void> outcome;
};

// What currentContext() gives: TaskContext context = co_await currentContext();
class CurrentContext {
public:
    bool await_ready() const noexcept { return false; }
    template <class Promise> bool await_suspend(std::coroutine_handle<Promise> asking) {
        context_ = asking.promise().context;
        return false;
    }
    TaskContext await_resume() { return std::move(context_); }

private:
    TaskContext context_;
};

// The context of the task that awaits it; goes on at once.
inline CurrentContext currentContext() { return {}; }

} // namespace vesko
