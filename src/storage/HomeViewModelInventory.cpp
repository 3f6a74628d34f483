#include "concurrency/Concurrency.h"
#include "orchestration/CleanupViewModel.h"
#include "storage/HomeViewModel.h"
#include <algorithm>
#include <utility>

// The first measurement, and the one that a stale cache asks for.
namespace vesko {
namespace {

constexpr Duration fullReindexDelay = std::chrono::seconds(1);

} // namespace

void HomeViewModel::refresh(std::shared_ptr<const CleanupViewModel> cleanup) {
    inventoryTask_.cancel();
    if (!cachedMeasurable_) isLoadingInventory = true;
    const bool hasVolume = showCached();
    inventoryTask_ = spawn(parts_.tasks, [self = shared_from_this(), cleanup = std::move(cleanup),
                                          hasVolume] { return self->loadInventory(cleanup, hasVolume); });
}

/// The figures that were kept belong into the window's first frame, so the volume is not waited for on a
/// worker here; it is one question to the file system, and the load that follows does not ask it again. What
/// can go follows with the load.
bool HomeViewModel::showCached() {
    if (!cachedMeasurable_ || dashboard->has_value()) return false;
    volume = parts_.volumeReader->readVolume();
    publish(*cachedMeasurable_, usedBytes(), lastCleanupInsights_);
    return true;
}

Task<void> HomeViewModel::loadInventory(std::shared_ptr<const CleanupViewModel> cleanup, bool hasVolume) {
    const TaskContext task = co_await currentContext();
    // How long the cache counts as fresh depends on whether a watcher stands.
    const TaskHandle<void> watching = watchTask_;
    if (watching) co_await watching.value();
    // Figures as old as this will do; a scan that begins now shares its readings.
    const Sizer sizer = StorageInventoryService::sizerForOneRun(parts_.inventorySizer);
    if (!hasVolume) co_await readVolume();
    if (task.stop.stopRequested()) co_return;
    const std::int64_t used = usedBytes();
    auto work = offload([groups = *cleanup->groups, used] { return makeConsultantBreakdown(groups, used); });
    ConsultantBreakdown insights = co_await work;
    if (task.stop.stopRequested()) co_return;
    lastCleanupInsights_ = std::move(insights);
    if (!cachedMeasurable_) {
        co_await measureFirst(sizer);
        co_return;
    }
    publish(*cachedMeasurable_, used, lastCleanupInsights_);
    isLoadingInventory = false;
    validateSelection(*cachedMeasurable_);
    if (isCacheFresh())
        pendingBucketIDs = IDs();
    else
        scheduleFullReindex(sizer);
}

/// Placeholders first, which fill bucket by bucket. The insights are those of the moment: the list may have
/// grown since the load began.
Task<void> HomeViewModel::measureFirst(Sizer sizer) {
    const TaskContext task = co_await currentContext();
    isLoadingInventory = true;
    const std::int64_t used = usedBytes();
    Buckets working = StorageInventoryService::emptyMeasurableBuckets(parts_.home);
    const std::vector<std::string> ids = StorageInventoryService::measurableBucketIDs();
    pendingBucketIDs = IDs(ids.begin(), ids.end());
    publish(working, used, lastCleanupInsights_);
    AsyncStream<StorageInventoryUpdate> stream =
        StorageInventoryService::measureStream(parts_.tasks, parts_.home, sizer, used);
    for (;;) {
        std::optional<StorageInventoryUpdate> update = co_await stream.next();
        if (!update || task.stop.stopRequested()) co_return;
        if (auto* one = std::get_if<BucketMeasured>(&*update)) {
            const auto place = std::ranges::find(working, one->bucket.id, &StorageCategoryBucket::id);
            if (place != working.end()) *place = one->bucket;
            setPending({one->bucket.id}, false);
            publish(working, used, lastCleanupInsights_);
            continue;
        }
        Buckets measured = std::move(std::get<InventoryFinished>(*update).buckets);
        removeSystem(measured);
        takeFinished(measured, used);
        StorageInventorySnapshot snapshot{*cacheCapturedAt_, used, std::move(measured)};
        co_await save(std::move(snapshot));
    }
}

void HomeViewModel::takeFinished(const Buckets& measured, std::int64_t used) {
    cachedMeasurable_ = measured;
    cacheCapturedAt_ = parts_.dates->now();
    isLoadingInventory = false;
    pendingBucketIDs = IDs();
    publish(measured, used, lastCleanupInsights_);
    validateSelection(measured);
}

void HomeViewModel::scheduleFullReindex(Sizer sizer) {
    IDs ids = std::exchange(dirtyBucketIDs_, IDs());
    if (ids.empty()) {
        const std::vector<std::string> all = StorageInventoryService::measurableBucketIDs();
        ids = IDs(all.begin(), all.end());
    }
    firstDirtyAt_.reset();
    reindexTask_.cancel();
    reindexTask_ =
        spawn(parts_.tasks,
              [weak = weak_from_this(), ids = std::move(ids), sizer = std::move(sizer)]() -> Task<void> {
                  co_await sleepFor(fullReindexDelay);
                  const auto self = weak.lock();
                  if (self) co_await self->reindex(ids, sizer);
              });
}

/// One bucket after the other, so that what the person does meanwhile stays quick.
Task<void> HomeViewModel::reindex(IDs ids, Sizer sizer) {
    if (ids.empty()) co_return;
    const TaskContext task = co_await currentContext();
    IDs shown = ids;
    const std::vector<std::string> measurable = StorageInventoryService::measurableBucketIDs();
    if (std::ranges::any_of(measurable, [&](const std::string& id) { return ids.contains(id); }))
        shown.insert(std::string(systemID)); // its remainder moves with them
    setPending(shown, true);
    co_await readVolume();
    const std::int64_t used = usedBytes();
    Buckets working =
        cachedMeasurable_ ? *cachedMeasurable_ : StorageInventoryService::emptyMeasurableBuckets(parts_.home);
    for (const std::string& id : ids) {
        std::optional<StorageCategoryBucket> measured;
        if (!task.stop.stopRequested())
            measured = co_await StorageInventoryService::measureBucket(id, parts_.home, sizer);
        // A bucket that was left half-way says 0, which is nothing to show.
        if (task.stop.stopRequested()) {
            setPending(shown, false);
            co_return;
        }
        const auto place = std::ranges::find(working, id, &StorageCategoryBucket::id);
        if (measured && place != working.end()) {
            *place = std::move(*measured);
            cachedMeasurable_ = working;
            publish(working, used, lastCleanupInsights_);
        }
        setPending({id}, false);
    }
    cacheCapturedAt_ = parts_.dates->now();
    publish(working, used, lastCleanupInsights_);
    setPending(shown, false);
    StorageInventorySnapshot snapshot{*cacheCapturedAt_, used, std::move(working)};
    co_await save(std::move(snapshot));
}

} // namespace vesko
