#pragma once

#include "concurrency/Task.h"
#include "concurrency/Wakeup.h"

#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <utility>

namespace vesko {

enum class StreamEnd { Finished, Cancelled };

// Values that come over time, kept without bound until the one consumer asks for them. The producer's side
// may be used from any thread. The stream ends when the producer finishes it, when the consumer's task is
// cancelled, or when the stream is destroyed (both count as cancelled).
template <class T> class AsyncStream {
    class State;

public:
    class Producer {
    public:
        explicit Producer(std::weak_ptr<State> state) : state_(std::move(state)) {}

        // False: the stream has ended and the value was dropped.
        bool yield(T value) const {
            auto state = state_.lock();
            return state && state->yield(std::move(value));
        }
        // The consumer still gets what was yielded before.
        void finish() const {
            if (auto state = state_.lock()) state->end(StreamEnd::Finished);
        }
        // Called once when the stream ends, on the thread that ends it; at once when it has ended already.
        // A later handler replaces an earlier one that has not been called.
        void onTermination(std::function<void(StreamEnd)> handler) const {
            auto state = state_.lock();
            if (state) {
                state->onTermination(std::move(handler));
            } else if (handler) {
                handler(StreamEnd::Cancelled);
            }
        }

    private:
        std::weak_ptr<State> state_;
    };

    // build is called at once with the Producer, which it may keep.
    template <class F> explicit AsyncStream(F build) : state_(std::make_shared<State>()) {
        build(Producer(state_));
    }
    AsyncStream(AsyncStream&&) noexcept = default;
    AsyncStream& operator=(AsyncStream&& other) noexcept {
        if (this != &other) {
            auto old = std::exchange(state_, std::move(other.state_));
            if (old) old->end(StreamEnd::Cancelled);
        }
        return *this;
    }
    ~AsyncStream() {
        if (state_) state_->end(StreamEnd::Cancelled);
    }

    class Next {
    public:
        explicit Next(std::shared_ptr<State> state) : state_(std::move(state)) {}
        Next(const Next&) = delete;
        Next& operator=(const Next&) = delete;

        bool await_ready() const noexcept { return false; }
        template <class Promise> bool await_suspend(std::coroutine_handle<Promise> reader) {
            const TaskContext& context = reader.promise().context;
            auto wakeup = std::make_shared<Wakeup>(reader, *context.home);
            if (context.stop.stopRequested()) state_->end(StreamEnd::Cancelled);
            if (!state_->wait(wakeup)) return false;
            onStop_.emplace(context.stop, [state = state_] { state->end(StreamEnd::Cancelled); });
            wakeup->arm();
            return true;
        }
        std::optional<T> await_resume() {
            onStop_.reset();
            return state_->pop();
        }

    private:
        std::shared_ptr<State> state_;
        std::optional<StopCallback> onStop_;
    };
    // The next value, nothing after the end. A second consumer that waits at the same time gets
    // std::logic_error.
    Next next() { return Next(state_); }

private:
    class State {
    public:
        bool yield(T value) {
            std::shared_ptr<Wakeup> woken;
            {
                std::lock_guard lock(mutex_);
                if (end_) return false;
                values_.push_back(std::move(value));
                woken = std::exchange(reader_, nullptr);
            }
            if (woken) woken->fire(Wakeup::Reason::Ready);
            return true;
        }
        void end(StreamEnd reason) {
            std::shared_ptr<Wakeup> woken;
            std::function<void(StreamEnd)> handler;
            {
                std::lock_guard lock(mutex_);
                if (end_) return;
                end_ = reason;
                woken = std::exchange(reader_, nullptr);
                handler = std::exchange(onTermination_, nullptr);
            }
            if (handler) handler(reason);
            if (woken) woken->fire(Wakeup::Reason::Ready);
        }
        void onTermination(std::function<void(StreamEnd)> handler) {
            std::optional<StreamEnd> ended;
            {
                std::lock_guard lock(mutex_);
                ended = end_;
                if (!ended) onTermination_.swap(handler);
            }
            if (ended && handler) handler(*ended);
        }
        bool wait(const std::shared_ptr<Wakeup>& wakeup) {
            std::lock_guard lock(mutex_);
            if (reader_) throw std::logic_error("a stream has one consumer");
            if (!values_.empty() || end_) return false;
            reader_ = wakeup;
            return true;
        }
        std::optional<T> pop() {
            std::lock_guard lock(mutex_);
            if (values_.empty()) return std::nullopt;
            std::optional<T> first(std::move(values_.front()));
            values_.pop_front();
            return first;
        }

    private:
        std::mutex mutex_;
        std::deque<T> values_;
        std::optional<StreamEnd> end_;
        std::shared_ptr<Wakeup> reader_;
        std::function<void(StreamEnd)> onTermination_;
    };

    std::shared_ptr<State> state_;
};

} // namespace vesko
