#pragma once
#include "concurrency/Executor.h"
#include "execution/CleanupError.h"
#include <chrono>
#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace vesko {

/// Carries what becomes of a run of items from the worker that removes them to the home thread: how each has
/// ended, in their order and each once, and how far the present one is. Twenty times a second at most, so
/// that what is told ten times a second by the removal arrives that often, and never more than one message is
/// on its way.
class RemovalRelay : public std::enable_shared_from_this<RemovalRelay> {
public:
    using Outcome = std::expected<void, CleanupError>;
    struct News {
        std::vector<Outcome> settled; ///< of the items that have ended since the last news
        std::int64_t bytesInside = 0; ///< what the item behind them has given back so far
    };

    /// `tell` is called on the home thread until close() has returned.
    RemovalRelay(Executor& home, std::function<void(News)> tell) : home_(home), tell_(std::move(tell)) {}

    /// On the worker, as often as it likes: what the present item has given back so far.
    void report(std::int64_t bytesFreed);
    /// On the worker: how the present item has ended. The next one begins.
    void settle(Outcome outcome);
    /// On the home thread, when the worker is done: tells what has not been told yet, and nothing after.
    void close();

private:
    void post();
    void tellNews();

    Executor& home_;
    std::function<void(News)> tell_;               // belongs to the home thread
    std::chrono::steady_clock::time_point last_{}; // belongs to the worker
    std::mutex mutex_;
    News news_;
    bool isOnItsWay_ = false;
};

} // namespace vesko
