#pragma once
#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace vesko {

/// Lets so many measurements run at once; the next one waits, asleep, until one ends. No time limit, no order
/// among those who wait, and cancelling a task does not end its wait. Any thread.
class SizingConcurrencyLimiter {
public:
    explicit SizingConcurrencyLimiter(std::int64_t maxConcurrent)
        : maxConcurrent_(maxConcurrent), free_(maxConcurrent) {}
    SizingConcurrencyLimiter(const SizingConcurrencyLimiter&) = delete;
    SizingConcurrencyLimiter& operator=(const SizingConcurrencyLimiter&) = delete;

    std::int64_t maxConcurrent() const noexcept { return maxConcurrent_; }

    /// Holds a place while it lives; making it waits for one.
    class Slot {
    public:
        explicit Slot(SizingConcurrencyLimiter& limiter) : limiter_(limiter) { limiter_.acquire(); }
        Slot(const Slot&) = delete;
        Slot& operator=(const Slot&) = delete;
        ~Slot() { limiter_.release(); }

    private:
        SizingConcurrencyLimiter& limiter_;
    };

private:
    void acquire();
    void release();

    const std::int64_t maxConcurrent_;
    std::mutex mutex_;
    std::condition_variable freed_;
    std::int64_t free_;
};

} // namespace vesko
