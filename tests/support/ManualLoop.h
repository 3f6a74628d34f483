#pragma once

#include "concurrency/Clock.h"
#include "concurrency/Executor.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <utility>

namespace vesko {

// A home loop that a test steps by hand: a run queue and a virtual clock in one. Nothing runs but inside
// drain(), advance() and waitFor(), on the test's thread. Virtual time moves only in advance().
class ManualLoop : public Executor, public Clock {
public:
    void post(std::function<void()> closure) override {
        {
            std::lock_guard lock(mutex_);
            queue_.push_back(std::move(closure));
        }
        posted_.notify_one();
    }

    Instant now() const override {
        std::lock_guard lock(mutex_);
        return now_;
    }
    Id at(Instant instant, std::function<void()> callback) override {
        std::lock_guard lock(mutex_);
        timers_.emplace(std::pair{std::max(instant, now_), ++lastId_}, std::move(callback));
        return lastId_;
    }
    void cancel(Id id) override {
        std::lock_guard lock(mutex_);
        std::erase_if(timers_, [&](const auto& timer) { return timer.first.second == id; });
    }
    std::size_t timers() const {
        std::lock_guard lock(mutex_);
        return timers_.size();
    }

    // Runs everything that is ready, and what that posts; time stands still. Gives the number of closures.
    std::size_t drain() {
        std::size_t count = 0;
        for (std::function<void()> next; pop(next); ++count) next();
        return count;
    }

    // Steps the virtual time: every timer on the way fires at its own instant, earliest first, and everything
    // that becomes ready runs before the next.
    void advance(Duration duration) {
        drain();
        const Instant end = now() + duration;
        for (std::function<void()> callback; popTimer(end, callback);) {
            callback();
            drain();
        }
        std::lock_guard lock(mutex_);
        now_ = end;
    }

    // Runs what real workers post until the condition holds. False: the limit of real time passed first.
    template <class Condition>
    bool waitFor(Condition condition, std::chrono::milliseconds limit = std::chrono::seconds(10)) {
        const auto end = std::chrono::steady_clock::now() + limit;
        for (;;) {
            drain();
            if (condition()) return true;
            if (std::chrono::steady_clock::now() >= end) return false;
            std::unique_lock lock(mutex_);
            // The condition may be one that no post announces, so look again soon.
            posted_.wait_for(lock, std::chrono::milliseconds(5), [&] { return !queue_.empty(); });
        }
    }

private:
    bool pop(std::function<void()>& next) {
        std::lock_guard lock(mutex_);
        if (queue_.empty()) return false;
        next = std::move(queue_.front());
        queue_.pop_front();
        return true;
    }
    bool popTimer(Instant end, std::function<void()>& callback) {
        std::lock_guard lock(mutex_);
        const auto first = timers_.begin();
        if (first == timers_.end() || first->first.first > end) return false;
        now_ = first->first.first;
        callback = std::move(first->second);
        timers_.erase(first);
        return true;
    }

    mutable std::mutex mutex_;
    std::condition_variable posted_;
    std::deque<std::function<void()>> queue_;
    std::map<std::pair<Instant, Id>, std::function<void()>> timers_;
    Id lastId_ = 0;
    Instant now_{std::chrono::hours(1)};
};

} // namespace vesko
