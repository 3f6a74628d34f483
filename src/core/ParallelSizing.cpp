#include "core/ParallelSizing.h"

#include "concurrency/CurrentTask.h"
#include "concurrency/Executor.h"
#include "core/ItemOrder.h"
#include <algorithm>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <utility>

namespace vesko {
namespace {

/// Enough to fill every place of a scan's limiter from one probe; each loop occupies a thread.
constexpr std::size_t mostLoops = 16;

std::optional<ScannableItem> measured(const ParallelSizeInput& input, const SizeCalculating& size) {
    const std::int64_t bytes =
        input.useLinkAwareSize ? size.linkAwareSize(input.url) : size.size(input.url, input.preferDiskUsage);
    if (bytes < 1 || bytes < input.minBytes) return std::nullopt;
    ScannableItem item;
    item.url = input.url;
    item.size = bytes;
    item.isDirectory = input.isDirectory;
    item.enrichmentKey = input.enrichmentKey ? *input.enrichmentKey : EnrichmentKey::forURL(input.url);
    item.displayLabel = input.displayLabel;
    return item;
}

/// Shared by the caller and its loops on the workers. A loop that gets its thread only after the caller has
/// left finds nothing to take; so the caller waits for inputs that were begun, never for a free worker.
class SharedWork {
public:
    SharedWork(std::vector<ParallelSizeInput> inputs, std::shared_ptr<const SizeCalculating> size,
               StopToken stop)
        : inputs_(std::move(inputs)), size_(std::move(size)), stop_(std::move(stop)) {}

    void runLoop() {
        const CurrentTaskScope scope(stop_);
        while (const ParallelSizeInput* input = take()) finish(measured(*input, *size_));
    }

    std::vector<ScannableItem> waitForItems() {
        std::unique_lock lock(mutex_);
        closed_ = true;
        idle_.wait(lock, [this] { return underWay_ == 0; });
        return std::move(items_);
    }

private:
    const ParallelSizeInput* take() {
        const std::lock_guard lock(mutex_);
        if (closed_ || next_ == inputs_.size() || stop_.stopRequested()) return nullptr;
        ++underWay_;
        return &inputs_[next_++];
    }
    void finish(std::optional<ScannableItem> item) {
        const std::lock_guard lock(mutex_);
        if (item) items_.push_back(std::move(*item));
        if (--underWay_ == 0) idle_.notify_all();
    }

    const std::vector<ParallelSizeInput> inputs_;
    const std::shared_ptr<const SizeCalculating> size_;
    const StopToken stop_;
    std::mutex mutex_;
    std::condition_variable idle_;
    std::size_t next_ = 0;
    std::size_t underWay_ = 0;
    bool closed_ = false;
    std::vector<ScannableItem> items_; // in finishing order
};

} // namespace

std::vector<ScannableItem> sizeInParallel(std::vector<ParallelSizeInput> inputs,
                                          const ProbeContext& context) {
    if (inputs.empty()) return {};
    const std::size_t loops = context.workers ? std::min(inputs.size(), mostLoops) : 1;
    const auto work = std::make_shared<SharedWork>(std::move(inputs), context.size, currentStopToken());
    for (std::size_t i = 1; i < loops; ++i) context.workers->post([work] { work->runLoop(); });
    work->runLoop();
    std::vector<ScannableItem> items = work->waitForItems();
    sortLargestFirst(items);
    return items;
}

} // namespace vesko
