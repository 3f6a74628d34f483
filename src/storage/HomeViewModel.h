#pragma once
#include "base/Date.h"
#include "base/Observation.h"
#include "base/Paths.h"
#include "concurrency/Spawn.h"
#include "concurrency/Task.h"
#include "core/DiskVolume.h"
#include "orchestration/StorageSegment.h"
#include "storage/FileSystemWatcher.h"
#include "storage/StorageDashboard.h"
#include "storage/StorageInventoryService.h"
#include "storage/StorageInventoryStore.h"
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace vesko {

class CleanupViewModel;

/// What the view model stands on. Everything is kept for its life.
struct HomeViewModelParts {
    TaskContext tasks; ///< the main thread's executor, the workers and the clock; its stop token is not used
    std::shared_ptr<const StoragePathSizing> inventorySizer;
    std::shared_ptr<const StorageInventoryStore> store;
    std::shared_ptr<const DiskVolumeReading> volumeReader;
    FileEventStreamMaker makeStream;
    /// The one switch over background scans and the watching of folders.
    std::function<bool()> isBackgroundRefreshEnabled = [] { return true; };
    FileURL home = homeFolder();
    const DateSource* dates = &systemDates();
};

/// The state of the Home screen: the volume's figures, the buckets that fill it, and what keeps them true.
/// The figures of the last measurement show at once; a watcher marks buckets whose folders changed, and a
/// debounced task measures these again. One object for the life of the program, on the main thread; what
/// blocks runs on workers and is awaited. Nothing here reports a failure: what can't be measured counts 0.
///
/// Fields that the screen watches are Observed: every change is told through `changes`.
class HomeViewModel : public std::enable_shared_from_this<HomeViewModel> {
public:
    using IDs = std::set<std::string>;
    using Buckets = std::vector<StorageCategoryBucket>;

    /// Takes up the figures of the last measurement; a development host starts without them.
    explicit HomeViewModel(HomeViewModelParts parts);
    ~HomeViewModel();
    HomeViewModel(const HomeViewModel&) = delete;
    HomeViewModel& operator=(const HomeViewModel&) = delete;

    ChangeSource changes;
    Observed<DiskVolumeInfo> volume{changes};
    Observed<std::optional<StorageDashboard>> dashboard{changes};
    Observed<std::optional<std::string>> selectedBucketID{changes}; ///< open in the inspector
    Observed<bool> isLoadingInventory{changes};                     ///< the first measurement runs
    Observed<IDs> pendingBucketIDs{changes};                        ///< being measured

    /// Begins the load again: at the program's start, when the screen appears, when the window becomes
    /// active. Kept figures show at once.
    void refresh(std::shared_ptr<const CleanupViewModel> cleanup);
    /// Reads the volume's figures anew, and nothing else.
    void refreshVolume();
    /// Starts the watcher unless the person switched background work off.
    void startWatching();
    /// Works the insights out anew, after the cleanup list changed.
    void refreshCleanupInsights(std::shared_ptr<const CleanupViewModel> cleanup);
    /// What the watcher tells: folders in which something changed, by their paths.
    void noteChangedPaths(const std::set<std::string>& paths);

    /// The dashboard's bucket of that id; absent when there is none.
    std::optional<StorageCategoryBucket> bucket(std::string_view id) const;
    /// What of a bucket the cleanup list knows, in the order of the insights.
    std::vector<ConsultantCategorySummary> cleanupSummaries(const StorageCategoryBucket& bucket) const;
    /// Used and available.
    std::vector<StorageSegment> legendSegments() const;
    /// Never below 0.
    std::int64_t usedBytes() const;
    /// Whether the last measurement's figures are at hand, so that a load shows them at once.
    bool hasCachedFigures() const noexcept { return cachedMeasurable_.has_value(); }

private:
    using Sizer = StorageInventoryService::Sizer;
    /// The bucket that is not measured: what the others leave of the used space.
    static constexpr std::string_view systemID = "system";
    static void removeSystem(Buckets& buckets);

    /// Tells whether it had something to show, and read the volume for it.
    bool showCached();
    Task<void> loadInventory(std::shared_ptr<const CleanupViewModel> cleanup, bool hasVolume);
    Task<void> measureFirst(Sizer sizer);
    void takeFinished(const Buckets& measured, std::int64_t used);
    Task<void> openWatcher();
    Task<void> readVolume();
    Task<void> recomputeInsights();
    Task<void> firstMeasurement();
    Task<void> reindex(IDs ids, Sizer sizer);
    void scheduleDebouncedReindex();
    void scheduleFullReindex(Sizer sizer);
    Task<void> save(StorageInventorySnapshot snapshot);

    bool isCacheFresh() const;
    bool wasStopped() const;
    void publish(const Buckets& buckets, std::int64_t used,
                 const std::optional<ConsultantBreakdown>& insights);
    void validateSelection(const Buckets& buckets);
    void setPending(const IDs& ids, bool isPending);

    HomeViewModelParts parts_;
    TaskHandle<void> inventoryTask_;
    TaskHandle<void> reindexTask_;
    TaskHandle<void> watchTask_;
    TaskHandle<void> insightsTask_;
    std::shared_ptr<const CleanupViewModel>
        insightsFor_;                         ///< whose list changed while insights were worked out
    std::optional<Buckets> cachedMeasurable_; ///< the last figures, without "system"
    std::optional<Date> cacheCapturedAt_;
    std::optional<ConsultantBreakdown> lastCleanupInsights_;
    std::shared_ptr<FileSystemWatcher> watcher_;
    std::vector<StorageInventoryService::WatchRoot> watchRootMap_;
    IDs dirtyBucketIDs_; ///< changed since they were measured
    std::optional<Date> firstDirtyAt_;
};

} // namespace vesko
