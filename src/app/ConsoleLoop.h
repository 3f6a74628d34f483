#pragma once
#include "concurrency/Executor.h"
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <utility>

namespace vesko {

/// The home loop of a program without a window: runs closures on the thread that calls run().
class ConsoleLoop final : public Executor {
public:
    void post(std::function<void()> closure) override {
        {
            const std::lock_guard lock(mutex_);
            queue_.push_back(std::move(closure));
        }
        posted_.notify_one();
    }

    /// Runs what is posted, asleep while there is nothing, until stop() was called from a closure.
    void run() {
        while (!stopped_) next()();
    }
    void stop() { stopped_ = true; }

private:
    std::function<void()> next() {
        std::unique_lock lock(mutex_);
        posted_.wait(lock, [this] { return !queue_.empty(); });
        std::function<void()> closure = std::move(queue_.front());
        queue_.pop_front();
        return closure;
    }

    std::mutex mutex_;
    std::condition_variable posted_;
    std::deque<std::function<void()>> queue_;
    bool stopped_ = false;
};

} // namespace vesko
