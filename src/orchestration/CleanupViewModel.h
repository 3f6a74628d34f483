#pragma once
#include "background/NotificationDelivering.h"
#include "base/Observation.h"
#include "base/StringCatalog.h"
#include "base/UserDefaults.h"
#include "concurrency/Spawn.h"
#include "concurrency/Task.h"
#include "core/DiskVolumeService.h"
#include "core/MeasuringRuns.h"
#include "core/ProbeFingerprint.h"
#include "core/ScanCacheStore.h"
#include "core/ScanEngine.h"
#include "core/ScanRecords.h"
#include "enrichment/CleanupEnriching.h"
#include "enrichment/CleanupReviewing.h"
#include "enrichment/DemotedPathsStore.h"
#include "enrichment/EnrichmentCacheHook.h"
#include "enrichment/EnrichmentStore.h"
#include "enrichment/ReviewOutcome.h"
#include "execution/CleanupExecuting.h"
#include "orchestration/AlertDecision.h"
#include "orchestration/CleanupPhase.h"
#include "orchestration/CleanupSectionEntry.h"
#include "orchestration/DeletionProgress.h"
#include "orchestration/FigureCache.h"
#include "orchestration/GroupFigures.h"
#include "orchestration/GroupVerdict.h"
#include "orchestration/StorageSegment.h"
#include "orchestration/TriState.h"
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace vesko {

/// What the view model stands on. Everything is kept for its life.
struct CleanupViewModelParts {
    TaskContext tasks; ///< the main thread's executor, the workers and the clock; its stop token is not used
    std::shared_ptr<ScanCacheStore> scanCacheStore;
    std::shared_ptr<EnrichmentStore> enrichmentStore;
    std::shared_ptr<DemotedPathsStore> demotedPathsStore;
    std::shared_ptr<const DiskVolumeReading> volumeReader;
    std::shared_ptr<NotificationDelivering> notificationService;
    std::shared_ptr<UserDefaults> defaults; ///< which notifications the person wants
    /// What the low-space notification goes by: the volume itself, whatever the screens show.
    std::shared_ptr<const DiskVolumeReading> alertVolume = std::make_shared<DiskVolumeService>();
    std::shared_ptr<CleanupEnriching> enricher;
    std::shared_ptr<CleanupReviewing> reviewer;
    std::function<bool()> isEnrichmentAvailable = [] { return false; };
    std::function<bool()> isReviewAvailable = [] { return false; };
    std::shared_ptr<const CleanupExecuting> executor;      ///< a seam: kept, not consulted by the deletion
    std::function<ScanEngine(ScanMode)> scanEngineFactory; ///< empty in the shipped program
    /// Where scans meet others that measure at the same time.
    std::shared_ptr<const MeasuringRuns> measuringRuns = std::make_shared<const MeasuringRuns>();
    const DateSource* dates = &systemDates();
};

class DeletionRun;

using URLSet = std::unordered_set<FileURL>;

/// The state of the Cleanup screen and everything that acts on it: scans, selection, search, deletion and the
/// model passes. One object for the life of the program, on the main thread; what blocks runs on workers and
/// is awaited.
///
/// Fields that screens watch are Observed: every change is told through `changes`, in the middle of an
/// operation too, so a listener only notes that something changed and reads on the next turn of the loop.
///
/// Always owned by a shared pointer: a scan and a deletion keep it alive to their end, the model passes do
/// not.
class CleanupViewModel : public std::enable_shared_from_this<CleanupViewModel> {
public:
    /// Takes up what the last run left: clears the demoted paths, fills itself from the scan cache, loads the
    /// enrichment cache, seeds names and selects what is safe. A development host starts empty.
    explicit CleanupViewModel(CleanupViewModelParts parts);
    ~CleanupViewModel();
    CleanupViewModel(const CleanupViewModel&) = delete;
    CleanupViewModel& operator=(const CleanupViewModel&) = delete;

    ChangeSource changes;

    // What the screen shows.
    Observed<std::vector<CleanupGroup>> groups{changes};
    Observed<std::int64_t> foundTotalBytes{changes};
    Observed<std::int64_t> indexedBytes{changes};
    Observed<std::string> searchText{changes};
    Observed<CleanupPhase> phase{changes};
    Observed<std::optional<Date>> lastScanDate{changes};
    Observed<std::optional<Date>> lastCleanupDate{changes};
    Observed<std::optional<std::int64_t>> lastCleanupFreedBytes{changes};
    Observed<std::optional<std::string>> cleanupMessage{changes};
    Observed<ScanPhase> scanPhase{changes};
    Observed<std::optional<ScanProgress>> scanProgress{changes};
    Observed<bool> scanWasPartial{changes};
    Observed<std::optional<std::string>> reviewMessage{changes};
    Observed<URLSet> aiDiscoveredURLs{changes};
    Observed<std::unordered_set<EnrichmentKey>> analyzingKeys{changes};
    Observed<URLSet> selectedItemIDs{changes};
    Observed<URLSet> userOverriddenIDs{changes};
    Observed<bool> didHydrateFromScanCache{changes};
    Observed<std::optional<std::string>> scrollToLargestGroupTrigger{changes}; ///< a UUID
    Observed<bool> scrollToLargestGroupPending{changes};
    Observed<std::optional<std::string>> pendingConsultantCategoryID{changes};
    Observed<std::optional<std::string>> scrollToConsultantCategoryTrigger{changes}; ///< a UUID
    Observed<bool> scrollToConsultantCategoryPending{changes};
    Observed<bool> isEnriching{changes};
    Observed<bool> isReviewing{changes};
    Observed<std::vector<ScanReviewCandidate>> pendingReviewCandidates{changes};
    /// Present only while `phase` is cleaning.
    Observed<std::optional<DeletionProgress>> deletionProgress{changes};

    // Scans.
    /// Returns when the scan's task has ended; returns at once while a scan or a deletion runs.
    Task<void> startScan(ScanMode mode);
    /// Stops the running scan; what was found stays.
    void cancelScan();
    std::int64_t recoverableBytes() const;
    /// The group with the largest sum; the first of equals; absent without groups.
    std::optional<std::string> largestGroupID() const;
    /// Whether a model pass still works on verdicts.
    bool isAIBusy() const;

    // Selection and search.
    void applyDefaultSelection();
    void applyDefaultSelectionToNewGroups();
    void reapplySelection(const std::unordered_set<EnrichmentKey>& keys);
    void setSelected(bool isSelected, const ScannableItem& item);
    TriState selectionState(const ItemList& items) const;
    TriState selectionState(const std::vector<ScannableItem>& items) const;
    void toggleGroup(const CleanupGroup& group);
    void toggleSection(const CleanupSection& section);
    std::vector<ScannableItem> sectionItems(const CleanupSection& section) const;
    std::vector<CleanupGroup> filteredGroups() const;
    std::vector<CleanupSectionEntry> cleanupSections() const;
    std::optional<std::string> firstGroupIDOfSection(std::string_view sectionID) const;
    std::optional<std::string> firstGroupIDOfCategory(std::string_view consultantCategoryID) const;
    std::vector<StorageSegment> sectionSegments() const;
    std::int64_t selectedBytes() const;
    std::int64_t selectedCount() const;
    /// Groups with at least one selected item, each cut down to those items.
    std::vector<CleanupGroup> selectedGroups() const;
    std::int64_t selectedGroupCount() const;

    // What a redraw of an unchanged list costs nothing by. Each count goes up with every change.
    std::uint64_t groupsRevision() const noexcept { return groups.revision(); }
    std::uint64_t selectionRevision() const noexcept { return selectedItemIDs.revision(); }
    /// Of everything that resolve() and resolveGroup() say, the texts' language aside.
    std::uint64_t verdictRevision() const noexcept;
    /// Sizes and selection of a group, kept until it or the selection changes.
    GroupFigures groupFigures(const CleanupGroup& group) const;

    // Names and verdicts.
    std::string displayTitle(const CleanupGroup& group) const;
    std::string itemTitle(const ScannableItem& item, const CleanupGroup& group) const;
    ResolvedEnrichment resolve(const ScannableItem& item, const CleanupGroup* group) const;
    ResolvedEnrichment resolveGroup(const CleanupGroup& group) const;
    /// The verdict of resolveGroup() in pieces, for groups of so many items that one walk over them would be
    /// felt: takes up to `count` items from the place `from` on into a verdict that began as beginVerdict().
    GroupVerdict beginVerdict(const CleanupGroup& group) const;
    void continueVerdict(GroupVerdict& verdict, const CleanupGroup& group, std::size_t from,
                         std::size_t count) const;

    // Deletion.
    /// Deletes what is selected, or of that only what `onlyItems` holds, item after item.
    Task<void> deleteSelected(std::optional<URLSet> onlyItems = std::nullopt);

    // Model passes.
    void startEnrichment();
    void stopEnrichment();
    void startReview();
    void stopReview();
    void clearReviewMessage();
    /// Moves what the patches move, then judges the list anew. Applies nothing when the task is cancelled
    /// meanwhile.
    Task<void> applyReviewPatches(std::vector<ReviewPatch> patches);

    /// Raises the notifications that a finished scan gives reason for, one after the other, and notes when.
    /// What could not be shown counts as raised. Raises none in a development host and once the scan's task
    /// is cancelled.
    Task<void> evaluateAlerts();

    /// Asks the Cleanup screen to scroll to a category's first group.
    void requestScrollToCategory(std::string categoryID);

    EnrichmentStore& enrichmentStore() const { return *parts_.enrichmentStore; }
    const TaskContext& tasks() const { return parts_.tasks; }

private:
    /// What one scan's task goes by: after its own cancellation, or once another scan has begun, it leaves
    /// the state alone.
    struct ScanRun {
        CleanupViewModel* model;
        std::uint64_t number;
        StopToken stop;

        bool isCancelled() const { return stop.stopRequested(); }
        bool isLatest() const { return model->lastScanRun_ == number; }
    };
    // Beginning.
    bool hydrateFromScanCache();
    void loadEnrichmentCacheOnce();

    // Scans.
    Task<void> carryOutScan(ScanMode mode, std::uint64_t number);
    Task<void> runScan(ScanMode mode, const ScanRun& run);
    Task<bool> takeDelta(ScanDelta delta, ScanMode mode, const ScanRun& run);
    Task<bool> takeProbeFinished(ProbeFinished finished, const ScanRun& run);
    Task<bool> finalizeScan(ScanReport report, ScanMode mode, const ScanRun& run);
    void prepareForScan(ScanMode mode);
    AlertSituation alertSituation() const;
    ScanEngine makeEngine(ScanMode mode) const;
    void refreshFingerprints();
    void persistScanSnapshot();
    /// Seeds entries a few thousand items at a time, with the loop free in between; tells whether it came to
    /// its end.
    Task<bool> seedInSlices(std::vector<CleanupGroup> list, StopToken stop);

    // Selection.
    bool mayTouchSelection() const { return phase->kind != CleanupPhase::Kind::cleaning; }
    bool isSafe(const ScannableItem& item, const CleanupGroup& group) const;
    void setAll(bool isSelected, const std::vector<ItemList>& lists);
    void discard(URLSet set);
    void reconsider(const std::unordered_set<EnrichmentKey>& keys, const std::vector<CleanupGroup>& list);
    GroupFigures workOutFigures(const CleanupGroup& group) const;
    GroupVerdict workOutVerdict(const CleanupGroup& group) const;

    // Deletion.
    /// Of the items, which are those that `run` gives next, as many as are done in one turn of a worker.
    Task<void> deleteItems(DeletionRun& run, const std::vector<const ScannableItem*>& items);
    void dropFromSelection(const std::vector<FileURL>& urls);
    void applyDeleteOutcome(std::int64_t deleted, std::int64_t freedBytes,
                            const std::vector<std::string>& errors);

    // Model passes.
    static Task<void> runEnrichment(std::weak_ptr<CleanupViewModel> model,
                                    std::shared_ptr<CleanupEnriching> enricher,
                                    std::vector<CleanupGroup> workList);
    static Task<void> runReview(std::weak_ptr<CleanupViewModel> model,
                                std::shared_ptr<CleanupReviewing> reviewer, std::vector<CleanupGroup> list,
                                std::vector<ScanReviewCandidate> candidates);
    void takePatch(const EnrichmentPatch& patch);
    void scheduleEnrichmentPersist();
    void commitReview(const ReviewOutcome& outcome, ScanReport report);

    CleanupViewModelParts parts_;
    SignificanceEngine significanceEngine_;
    ChangeSource::Subscription enrichmentCacheClearObserver_;
    ChangeSource::Subscription entriesObserver_;
    std::uint64_t entriesRevision_ = 0;
    bool didLoadEnrichmentCache_ = false;

    TaskHandle<void> scanTask_;
    TaskHandle<void> persistScanTask_;
    TaskHandle<void> enrichmentTask_;
    TaskHandle<void> persistTask_;
    TaskHandle<void> reviewTask_;
    std::uint64_t lastScanRun_ = 0;

    std::unordered_set<std::string> validationPreviousGroupIDs_;
    std::vector<CleanupGroup> validationCachedGroups_;
    std::unordered_set<std::string> validationRanProbeIDs_;
    ProbeFingerprints cachedProbeFingerprints_;
    std::int64_t notificationPreviousRecoverableBytes_ = 0;
    std::unordered_set<std::string> notificationPreviousGroupIDs_;

    mutable FigureCache<GroupFigures> figures_;
    mutable FigureCache<GroupVerdict> verdicts_;
};

} // namespace vesko
