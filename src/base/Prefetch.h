#pragma once
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

namespace vesko {

/// A result that is worked out on a thread of its own before anybody asks for it. All operations may be
/// called from any thread. Going away waits for nothing: the thread ends by itself and its result is dropped.
template <class Value> class Prefetch {
public:
    /// Starts the work unless a result is on its way or waiting. `work` must not throw and must not touch
    /// anything that may go away before it ends.
    void start(std::function<Value()> work) {
        const std::lock_guard lock(mutex_);
        if (result_.valid()) return;
        std::packaged_task<Value()> task(std::move(work));
        std::future<Value> result = task.get_future();
        try {
            std::thread(std::move(task)).detach();
        } catch (const std::system_error&) {
            return; // no thread to be had: whoever asks works it out
        }
        result_ = std::move(result);
    }

    /// Waits for the result and hands it over; nothing when none was started.
    std::optional<Value> take() {
        std::future<Value> result = release();
        if (!result.valid()) return std::nullopt;
        return result.get();
    }

    /// What was started counts no longer.
    void drop() { release(); }

private:
    std::future<Value> release() {
        const std::lock_guard lock(mutex_);
        return std::exchange(result_, {});
    }

    std::mutex mutex_;
    std::future<Value> result_;
};

} // namespace vesko
