#pragma once
#include "concurrency/Executor.h"
#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

namespace vesko {

/// Carries the progress of one removal from the worker to the home thread: ten times a second at most, and
/// never more than one message on its way.
class RemovalRelay : public std::enable_shared_from_this<RemovalRelay> {
public:
    /// `tell` is called on the home thread with the bytes so far, until close().
    RemovalRelay(Executor& home, std::function<void(std::int64_t)> tell)
        : home_(home), tell_(std::move(tell)) {}

    /// On the worker, as often as it likes.
    void report(std::int64_t bytesFreed);
    /// On the home thread: what is still on its way is dropped.
    void close() { tell_ = nullptr; }

private:
    Executor& home_;
    std::function<void(std::int64_t)> tell_; // belongs to the home thread
    std::atomic<std::int64_t> bytes_{0};
    std::atomic<bool> isOnItsWay_{false};
    std::chrono::steady_clock::time_point last_{}; // belongs to the worker
};

} // namespace vesko
