#pragma once

#include "concurrency/Detached.h"
#include "concurrency/TaskRegistry.h"
#include "concurrency/Wakeup.h"

#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace vesko {

// What a spawned task and its handles share.
template <class T> struct SpawnedTask {
    StopSource stop;
    bool done = false;
    Outcome<T> outcome;
    std::vector<std::shared_ptr<Wakeup>> waiters;

    void end() {
        done = true;
        for (const auto& waiter : std::exchange(waiters, {})) waiter->fire(Wakeup::Reason::Ready);
    }
};

// A spawned task seen from outside; copies show the same task, and dropping one changes nothing.
// Belongs to the home thread, cancel() aside, which any thread may call. An empty handle does nothing and is
// not done.
template <class T> class TaskHandle {
public:
    TaskHandle() = default;
    explicit TaskHandle(std::shared_ptr<SpawnedTask<T>> task) : task_(std::move(task)) {}

    void cancel() const {
        if (task_) task_->stop.requestStop();
    }
    bool done() const { return task_ && task_->done; }
    explicit operator bool() const { return task_ != nullptr; }

    class Value {
    public:
        explicit Value(std::shared_ptr<SpawnedTask<T>> task) : task_(std::move(task)) {}
        bool await_ready() const noexcept { return task_->done; }
        template <class Promise> void await_suspend(std::coroutine_handle<Promise> reader) {
            auto wakeup = std::make_shared<Wakeup>(reader, *reader.promise().context.home);
            task_->waiters.push_back(wakeup);
            wakeup->arm();
        }
        T await_resume() { return task_->outcome.share(); }

    private:
        std::shared_ptr<SpawnedTask<T>> task_;
    };
    // Waits for the task and gives its value, or throws its exception. Several may wait; each gets a copy, or
    // the first the value where it can't be copied. Cancelling the one who waits does not end the wait.
    Value value() const { return Value(task_); }

private:
    std::shared_ptr<SpawnedTask<T>> task_;
};

// Cancels its task when it goes or is replaced: for a task that serves one owner.
template <class T> class CancelOnDrop {
public:
    CancelOnDrop() = default;
    CancelOnDrop(TaskHandle<T> handle) : handle_(std::move(handle)) {}
    CancelOnDrop(CancelOnDrop&& other) noexcept : handle_(std::exchange(other.handle_, {})) {}
    CancelOnDrop& operator=(CancelOnDrop&& other) noexcept {
        if (this != &other) {
            const TaskHandle<T> old = std::exchange(handle_, std::exchange(other.handle_, {}));
            old.cancel();
        }
        return *this;
    }
    ~CancelOnDrop() { handle_.cancel(); }

    const TaskHandle<T>& handle() const { return handle_; }

private:
    TaskHandle<T> handle_;
};

template <class T, class F>
Detached driveSpawned(std::shared_ptr<SpawnedTask<T>> task, [[maybe_unused]] TaskRegistry::Entry entry,
                      F body) {
    // The frame's parameters go in reverse order: what the body holds first, then the entry.
    auto running = captureTask<T>(body, task->outcome);
    co_await running;
    task->end();
}

// Starts a task of its own that nobody has to await. body is a callable that gives a Task<T>; it is kept
// alive for as long as its coroutine runs, so captures of a coroutine lambda are safe here, and only here and
// in task groups. The task is cancelled through its handle or the registry; the context's own stop token is
// not inherited. An exception that nobody reads through value() is dropped.
template <class F> auto spawn(TaskContext context, F body) {
    using T = typename std::invoke_result_t<F&>::value_type;
    auto task = std::make_shared<SpawnedTask<T>>();
    auto entry = context.registry ? context.registry->enter(task->stop) : TaskRegistry::Entry();
    Detached driver = driveSpawned<T, F>(task, std::move(entry), std::move(body));
    context.stop = task->stop.token();
    driver.start(std::move(context));
    return TaskHandle<T>(task);
}

} // namespace vesko
