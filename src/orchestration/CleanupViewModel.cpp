#include "orchestration/CleanupViewModel.h"

#include "base/Environment.h"
#include "concurrency/Concurrency.h"
#include <utility>

namespace vesko {

CleanupViewModel::CleanupViewModel(CleanupViewModelParts parts) : parts_(std::move(parts)) {
    EnrichmentStore& store = *parts_.enrichmentStore;
    enrichmentCacheClearObserver_ =
        subscribeToNotification(enrichmentCacheShouldClear, [&store] { store.clear(); });
    entriesObserver_ = store.changes().subscribe([this] {
        ++entriesRevision_;
        changes.notify();
    });
    if (isDevelopmentHost()) return;
    // A demotion never outlives one run of the program.
    parts_.demotedPathsStore->clear();
    didHydrateFromScanCache = hydrateFromScanCache();
    loadEnrichmentCacheOnce();
    if (*didHydrateFromScanCache) {
        store.seedHeuristics(*groups);
        applyDefaultSelection();
    }
}

CleanupViewModel::~CleanupViewModel() {
    enrichmentTask_.cancel();
    persistTask_.cancel();
    reviewTask_.cancel();
}

bool CleanupViewModel::hydrateFromScanCache() {
    std::optional<ScanCacheSnapshot> snapshot = parts_.scanCacheStore->load();
    if (!snapshot) return false;
    groups = std::move(snapshot->groups);
    foundTotalBytes = snapshot->foundTotalBytes;
    lastScanDate = snapshot->scanDate;
    lastCleanupDate = snapshot->lastCleanupDate;
    lastCleanupFreedBytes = snapshot->lastCleanupFreedBytes;
    cachedProbeFingerprints_ = std::move(snapshot->probeFingerprints);
    return true;
}

void CleanupViewModel::loadEnrichmentCacheOnce() {
    if (std::exchange(didLoadEnrichmentCache_, true)) return;
    parts_.enrichmentStore->load();
}

std::uint64_t CleanupViewModel::verdictRevision() const noexcept {
    return entriesRevision_ + analyzingKeys.revision() + aiDiscoveredURLs.revision();
}

void CleanupViewModel::persistScanSnapshot() {
    persistScanTask_.cancel();
    ScanCacheSnapshot snapshot;
    snapshot.scanDate = lastScanDate->value_or(parts_.dates->now());
    snapshot.foundTotalBytes = *foundTotalBytes;
    snapshot.groups = *groups;
    snapshot.lastCleanupDate = *lastCleanupDate;
    snapshot.lastCleanupFreedBytes = *lastCleanupFreedBytes;
    snapshot.probeFingerprints = cachedProbeFingerprints_;
    persistScanTask_ =
        spawn(parts_.tasks, [store = parts_.scanCacheStore, kept = std::move(snapshot)]() -> Task<void> {
            // A write that has begun goes on to its end; the store replaces the file in one step.
            auto write = offload([&store, &kept](StopToken stop) {
                if (!stop.stopRequested()) store->save(kept);
            });
            co_await write;
        });
}

} // namespace vesko
