#pragma once
#include <atomic>
#include <cstdint>

namespace vesko {

/// How much more may be kept; shared by all who keep.
class RecordBudget {
public:
    explicit RecordBudget(std::int64_t amount) : left_(amount) {}

    /// All of it or nothing.
    bool take(std::int64_t amount) noexcept {
        if (left_.fetch_sub(amount, std::memory_order_relaxed) >= amount) return true;
        giveBack(amount);
        return false;
    }
    void giveBack(std::int64_t amount) noexcept { left_.fetch_add(amount, std::memory_order_relaxed); }
    std::int64_t left() const noexcept { return left_.load(std::memory_order_relaxed); }

private:
    std::atomic<std::int64_t> left_;
};

} // namespace vesko
