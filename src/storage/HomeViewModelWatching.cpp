#include "base/FileSystem.h"
#include "concurrency/Concurrency.h"
#include "storage/HomeViewModel.h"
#include <algorithm>
#include <utility>

// Changes on disk, and when they are measured.
namespace vesko {
namespace {

constexpr double watcherLatency = 3.0;
constexpr double quietSeconds = 5.0;
constexpr double longestDelay = 30.0;

bool liesAtOrBelow(std::string_view path, std::string_view root) {
    if (!path.starts_with(root)) return false;
    return path.size() == root.size() || path[root.size()] == '/';
}

Duration seconds(double count) {
    return std::chrono::duration_cast<Duration>(std::chrono::duration<double>(count));
}

} // namespace

void HomeViewModel::startWatching() {
    if (watcher_ || (watchTask_ && !watchTask_.done())) return;
    if (!parts_.isBackgroundRefreshEnabled()) return;
    watchRootMap_ = StorageInventoryService::watchRoots(parts_.home);
    watchTask_ = spawn(parts_.tasks, [self = shared_from_this()] { return self->openWatcher(); });
}

Task<void> HomeViewModel::openWatcher() {
    auto look = offload([roots = watchRootMap_] {
        std::vector<std::string> existing;
        for (const auto& entry : roots)
            if (fileExists(FileURL(entry.root))) existing.push_back(entry.root);
        return existing;
    });
    std::vector<std::string> paths = co_await look;
    const TaskContext task = co_await currentContext();
    if (paths.empty() || task.stop.stopRequested()) co_return;
    // The handler runs on the watcher's queue.
    watcher_ = std::make_shared<FileSystemWatcher>(
        *parts_.tasks.workers, std::move(paths), watcherLatency, parts_.makeStream,
        [weak = weak_from_this(), home = parts_.tasks.home](const std::set<std::string>& changed) {
            home->post([weak, changed] {
                if (const auto self = weak.lock()) self->noteChangedPaths(changed);
            });
        });
    watcher_->start();
}

void HomeViewModel::noteChangedPaths(const std::set<std::string>& paths) {
    for (std::string_view path : paths) {
        if (path.ends_with('/')) path.remove_suffix(1);
        const auto entry = std::ranges::find_if(
            watchRootMap_, [path](const auto& candidate) { return liesAtOrBelow(path, candidate.root); });
        if (entry != watchRootMap_.end()) dirtyBucketIDs_.insert(entry->bucketID);
    }
    if (!dirtyBucketIDs_.empty()) scheduleDebouncedReindex();
}

/// Each change begins the quiet time anew, and a steady stream of changes is measured all the same, half a
/// minute after its first.
void HomeViewModel::scheduleDebouncedReindex() {
    if (!firstDirtyAt_) firstDirtyAt_ = parts_.dates->now();
    reindexTask_.cancel();
    reindexTask_ = spawn(parts_.tasks, [weak = weak_from_this()]() -> Task<void> {
        double delay = 0;
        if (const auto self = weak.lock()) {
            const Date now = self->parts_.dates->now();
            const double elapsed = self->firstDirtyAt_ ? secondsBetween(*self->firstDirtyAt_, now) : 0;
            // A clock that was set back would put the measurement off for as long.
            if (elapsed < 0) self->firstDirtyAt_ = now;
            delay = std::max(0.0, std::min(longestDelay - elapsed, quietSeconds));
        }
        co_await sleepFor(seconds(delay));
        const auto self = weak.lock();
        if (!self) co_return;
        const TaskContext task = co_await currentContext();
        co_await self->firstMeasurement();
        if (task.stop.stopRequested()) co_return;
        IDs taken = std::exchange(self->dirtyBucketIDs_, IDs());
        self->firstDirtyAt_.reset();
        co_await self->reindex(std::move(taken), self->parts_.inventorySizer);
    });
}

/// Ends when no first measurement runs any more. Before that the other buckets have no figures yet, and those
/// of one alone must not pass for the whole.
Task<void> HomeViewModel::firstMeasurement() {
    for (;;) {
        const TaskHandle<void> load = inventoryTask_;
        if (cachedMeasurable_ || !load || load.done()) co_return;
        co_await load.value();
    }
}

} // namespace vesko
