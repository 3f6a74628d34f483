#pragma once

#include "concurrency/BlockingCall.h"
#include "concurrency/Detached.h"
#include "concurrency/Wakeup.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

namespace vesko {

// Children that run at once and are delivered in the order in which they finish. Made by withTaskGroup, which
// waits for all of them; cancelling the task cancels the children.
template <class T> class TaskGroup {
    struct State;

public:
    explicit TaskGroup(const TaskContext& context)
        : context_(context), onStop_(context.stop, [stop = stop_] { stop.requestStop(); }) {
        context_.stop = stop_.token();
    }

    // A blocking closure on a worker; takes the group's StopToken or nothing.
    template <class F> void add(F call) {
        state_->begin();
        auto shared = std::make_shared<F>(std::move(call));
        context_.workers->post([state = state_, stop = context_.stop, shared]() mutable {
            Outcome<T> outcome;
            outcome.capture([&] { return callBlocking(*shared, stop); });
            // What the closure holds goes before the parent learns of the end, which may destroy what it
            // shows.
            shared.reset();
            state->deliver(std::move(outcome));
        });
    }

    // A coroutine at home: body is a callable that gives a Task<T>, kept alive while it runs.
    template <class F> void addTask(F body) {
        state_->begin();
        drive(state_, std::move(body)).start(context_);
    }

    // Reaches children that are added later as well.
    void cancelAll() { stop_.requestStop(); }

    class Next {
    public:
        explicit Next(std::shared_ptr<State> state) : state_(std::move(state)) {}
        bool await_ready() const { return state_->settled(); }
        template <class Promise> bool await_suspend(std::coroutine_handle<Promise> reader) {
            auto wakeup = std::make_shared<Wakeup>(reader, *reader.promise().context.home);
            if (!state_->wait(wakeup)) return false;
            wakeup->arm();
            return true;
        }
        std::optional<Outcome<T>> await_resume() { return state_->pop(); }

    private:
        std::shared_ptr<State> state_;
    };
    // The next child that finishes: take() gives its value or throws its exception. Nothing: every child has
    // been delivered. One reader.
    Next next() { return Next(state_); }

private:
    struct State {
        void begin() {
            std::lock_guard lock(mutex);
            ++running;
        }
        void deliver(Outcome<T> outcome) {
            std::shared_ptr<Wakeup> woken;
            {
                std::lock_guard lock(mutex);
                --running;
                finished.push_back(std::move(outcome));
                woken = std::exchange(reader, nullptr);
            }
            if (woken) woken->fire(Wakeup::Reason::Ready);
        }
        bool settled() {
            std::lock_guard lock(mutex);
            return !finished.empty() || running == 0;
        }
        bool wait(const std::shared_ptr<Wakeup>& wakeup) {
            std::lock_guard lock(mutex);
            if (!finished.empty() || running == 0) return false;
            reader = wakeup;
            return true;
        }
        std::optional<Outcome<T>> pop() {
            std::lock_guard lock(mutex);
            if (finished.empty()) return std::nullopt;
            std::optional<Outcome<T>> first(std::move(finished.front()));
            finished.pop_front();
            return first;
        }

        std::mutex mutex;
        std::deque<Outcome<T>> finished;
        std::size_t running = 0;
        std::shared_ptr<Wakeup> reader;
    };

    template <class F> static Detached drive(std::shared_ptr<State> state, F body) {
        Outcome<T> outcome;
        {
            F kept = std::move(body);
            auto running = captureTask<T>(kept, outcome);
            co_await running;
        }
        state->deliver(std::move(outcome));
    }

    std::shared_ptr<State> state_ = std::make_shared<State>();
    StopSource stop_;
    TaskContext context_; // the children's
    StopCallback onStop_;
};

// Runs a body with a group and waits for all children before it ends, so nothing that they use goes before
// them. An exception of the body cancels the children first. Gives what the body gives; a child's exception
// counts only where the body takes it.
template <class T, class F> auto withTaskGroup(F body) -> std::invoke_result_t<F&, TaskGroup<T>&> {
    using Result = typename std::invoke_result_t<F&, TaskGroup<T>&>::value_type;
    TaskContext context = co_await currentContext();
    TaskGroup<T> group(context);
    Outcome<Result> outcome;
    auto call = [&body, &group] { return body(group); };
    auto running = captureTask<Result>(call, outcome);
    co_await running;
    if (outcome.failed()) group.cancelAll();
    for (;;) {
        auto left = co_await group.next();
        if (!left) break;
    }
    co_return outcome.take();
}

} // namespace vesko
