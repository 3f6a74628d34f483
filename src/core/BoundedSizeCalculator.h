#pragma once
#include "core/SizeCalculating.h"
#include "core/SizingConcurrencyLimiter.h"
#include <memory>
#include <utility>

namespace vesko {

/// Another calculator behind a limiter that all copies share: waits for a place, measures, gives it back.
class BoundedSizeCalculator final : public SizeCalculating {
public:
    BoundedSizeCalculator(std::shared_ptr<const SizeCalculating> inner,
                          std::shared_ptr<SizingConcurrencyLimiter> limiter)
        : inner_(std::move(inner)), limiter_(std::move(limiter)) {}

    std::int64_t size(const FileURL& url, bool preferDiskUsage) const override {
        const SizingConcurrencyLimiter::Slot slot(*limiter_);
        return inner_->size(url, preferDiskUsage);
    }
    std::int64_t linkAwareSize(const FileURL& url) const override {
        const SizingConcurrencyLimiter::Slot slot(*limiter_);
        return inner_->linkAwareSize(url);
    }

private:
    std::shared_ptr<const SizeCalculating> inner_;
    std::shared_ptr<SizingConcurrencyLimiter> limiter_;
};

} // namespace vesko
