#include "storage/HomeViewModel.h"

#include "base/Environment.h"
#include "base/StringCatalog.h"
#include "concurrency/Concurrency.h"
#include "orchestration/CleanupViewModel.h"
#include <algorithm>
#include <utility>

namespace vesko {
namespace {

constexpr double cacheLifetimeWatched = 86'400;
constexpr double cacheLifetimeUnwatched = 600;

} // namespace

HomeViewModel::HomeViewModel(HomeViewModelParts parts) : parts_(std::move(parts)) {
    if (isDevelopmentHost()) return;
    std::optional<StorageInventorySnapshot> snapshot = parts_.store->load();
    if (!snapshot) return;
    removeSystem(snapshot->buckets);
    cachedMeasurable_ = std::move(snapshot->buckets);
    cacheCapturedAt_ = snapshot->capturedAt;
}

void HomeViewModel::removeSystem(Buckets& buckets) {
    std::erase_if(buckets, [](const StorageCategoryBucket& bucket) { return bucket.id == systemID; });
}

HomeViewModel::~HomeViewModel() {
    if (watcher_) watcher_->stop();
    inventoryTask_.cancel();
    reindexTask_.cancel();
    watchTask_.cancel();
    insightsTask_.cancel();
}

std::int64_t HomeViewModel::usedBytes() const {
    return std::max<std::int64_t>(0, volume->totalBytes - volume->availableBytes);
}

std::optional<StorageCategoryBucket> HomeViewModel::bucket(std::string_view id) const {
    if (!dashboard->has_value()) return std::nullopt;
    const Buckets& buckets = (*dashboard)->buckets;
    const auto found = std::ranges::find(buckets, id, &StorageCategoryBucket::id);
    return found == buckets.end() ? std::nullopt : std::optional(*found);
}

std::vector<ConsultantCategorySummary>
HomeViewModel::cleanupSummaries(const StorageCategoryBucket& bucket) const {
    if (!dashboard->has_value() || !(*dashboard)->cleanupInsights || !bucket.cleanupCategoryIDs) return {};
    std::vector<ConsultantCategorySummary> summaries;
    for (const ConsultantCategorySummary& summary : (*dashboard)->cleanupInsights->categories)
        if (summary.totalBytes > 0 && std::ranges::find(*bucket.cleanupCategoryIDs, summary.category.id) !=
                                          bucket.cleanupCategoryIDs->end())
            summaries.push_back(summary);
    return summaries;
}

std::vector<StorageSegment> HomeViewModel::legendSegments() const {
    return {{"used", localized("home.used"), usedBytes(), SegmentColor::warning, false},
            {"available", localized("home.free"), volume->availableBytes, SegmentColor::green, false}};
}

bool HomeViewModel::isCacheFresh() const {
    if (!cachedMeasurable_ || !cacheCapturedAt_ || !dirtyBucketIDs_.empty()) return false;
    return secondsBetween(*cacheCapturedAt_, parts_.dates->now()) <
           (watcher_ ? cacheLifetimeWatched : cacheLifetimeUnwatched);
}

void HomeViewModel::publish(const Buckets& buckets, std::int64_t used,
                            const std::optional<ConsultantBreakdown>& insights) {
    StorageDashboard next{buckets, used, insights};
    if (auto system = StorageInventoryService::systemBucket(used, buckets))
        next.buckets.push_back(std::move(*system));
    dashboard = std::optional(std::move(next));
}

void HomeViewModel::validateSelection(const Buckets& buckets) {
    const std::optional<std::string>& selected = *selectedBucketID;
    if (!selected || *selected == systemID) return;
    if (std::ranges::find(buckets, *selected, &StorageCategoryBucket::id) == buckets.end())
        selectedBucketID = std::nullopt;
}

void HomeViewModel::setPending(const IDs& ids, bool isPending) {
    IDs pending = *pendingBucketIDs;
    for (const std::string& id : ids)
        if (isPending)
            pending.insert(id);
        else
            pending.erase(id);
    pendingBucketIDs = std::move(pending);
}

void HomeViewModel::refreshVolume() {
    spawn(parts_.tasks, [self = shared_from_this()] { return self->readVolume(); });
}

Task<void> HomeViewModel::readVolume() {
    auto reading = offload([reader = parts_.volumeReader] { return reader->readVolume(); });
    DiskVolumeInfo read = co_await reading;
    volume = std::move(read);
}

Task<void> HomeViewModel::save(StorageInventorySnapshot snapshot) {
    auto write = offload([store = parts_.store, kept = std::move(snapshot)] { store->save(kept); });
    co_await write;
}

// The insights.

void HomeViewModel::refreshCleanupInsights(std::shared_ptr<const CleanupViewModel> cleanup) {
    insightsFor_ = std::move(cleanup);
    if (insightsTask_ && !insightsTask_.done()) return;
    insightsTask_ = spawn(parts_.tasks, [self = shared_from_this()] { return self->recomputeInsights(); });
}

/// Over a long list this takes longer than a frame, so a worker does it; changes that come meanwhile make one
/// more round.
Task<void> HomeViewModel::recomputeInsights() {
    const TaskContext task = co_await currentContext();
    while (const std::shared_ptr<const CleanupViewModel> cleanup = std::exchange(insightsFor_, nullptr)) {
        if (!cachedMeasurable_ && !dashboard->has_value()) co_return;
        const std::int64_t used = usedBytes();
        auto work =
            offload([groups = *cleanup->groups, used] { return makeConsultantBreakdown(groups, used); });
        ConsultantBreakdown insights = co_await work;
        if (task.stop.stopRequested()) co_return;
        lastCleanupInsights_ = std::move(insights);
        if (cachedMeasurable_) {
            publish(*cachedMeasurable_, used, lastCleanupInsights_);
            continue;
        }
        if (!dashboard->has_value()) co_return;
        Buckets measurable = (*dashboard)->buckets;
        removeSystem(measurable);
        publish(measurable, used, lastCleanupInsights_);
    }
}

} // namespace vesko
