#include "background/BackgroundScanScheduler.h"

#include "concurrency/Concurrency.h"
#include <mutex>
#include <utility>

namespace vesko {
namespace {

/// Ends the stream when the task that holds it ends, however it does.
class EndAtLast {
public:
    explicit EndAtLast(AsyncStream<bool>::Producer producer) : producer_(std::move(producer)) {}
    EndAtLast(const EndAtLast&) = delete;
    EndAtLast& operator=(const EndAtLast&) = delete;
    ~EndAtLast() { producer_.finish(); }

private:
    AsyncStream<bool>::Producer producer_;
};

} // namespace

/// Tells the platform that a turn is finished: when asked to, and at the latest when nobody is left to do so,
/// since a turn that is never finished would be the last.
class BackgroundScanScheduler::Completion {
public:
    explicit Completion(PeriodicActivity::Finished finished) : finished_(std::move(finished)) {}
    Completion(const Completion&) = delete;
    Completion& operator=(const Completion&) = delete;
    ~Completion() { finish(); }

    void finish() {
        if (const auto finished = std::exchange(finished_, nullptr)) finished();
    }

private:
    PeriodicActivity::Finished finished_;
};

/// Where the platform's thread comes in. Once the scheduler is gone, nothing behind it may be touched.
struct BackgroundScanScheduler::Door {
    std::mutex mutex;
    bool isOpen = true;
};

BackgroundScanScheduler::BackgroundScanScheduler(BackgroundScanSchedulerParts parts)
    : parts_(std::move(parts)), door_(std::make_shared<Door>()),
      activity_(parts_.makeActivity({"com.vesko.scan-refresh", true, interval, tolerance})) {}

BackgroundScanScheduler::~BackgroundScanScheduler() {
    const std::lock_guard lock(door_->mutex);
    door_->isOpen = false;
}

void BackgroundScanScheduler::schedule() {
    if (std::exchange(hasScheduled_, true)) return;
    activity_->schedule(
        [door = door_, weak = weak_from_this(), tasks = parts_.tasks](PeriodicActivity::Finished finished) {
            const auto completion = std::make_shared<Completion>(std::move(finished));
            const std::lock_guard lock(door->mutex);
            if (!door->isOpen) return;
            spawn(tasks, [weak, completion]() -> Task<void> {
                if (const auto self = weak.lock()) co_await self->fire();
                completion->finish();
            });
        });
}

bool BackgroundScanScheduler::mayFire() const {
    return parts_.hasFullDiskAccess() && parts_.isEnabled() && !isScanActive() && onFire;
}

Task<void> BackgroundScanScheduler::fire() {
    if (!mayFire()) co_return;
    // Two tasks and no group: a group waits for its children, and what was started may outlast its turn.
    std::optional<AsyncStream<bool>::Producer> end;
    AsyncStream<bool> first(
        [&end](AsyncStream<bool>::Producer producer) { end.emplace(std::move(producer)); });
    const TaskHandle<void> work = spawn(parts_.tasks, [run = onFire, end = *end]() -> Task<void> {
        const EndAtLast atLast(end);
        co_await run();
    });
    const TaskHandle<void> timer = spawn(parts_.tasks, [end = *end]() -> Task<void> {
        const EndAtLast atLast(end);
        co_await sleepFor(limit);
    });
    const std::optional<bool> nothing = co_await first.next();
    static_cast<void>(nothing);
    work.cancel();
    timer.cancel();
}

} // namespace vesko
