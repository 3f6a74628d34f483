#include "ui/HomeScreenState.h"
#include "base/ByteFormat.h"
#include "base/Paths.h"
#include "base/StringCatalog.h"
#include "orchestration/CleanupViewModel.h"
#include "storage/HomeViewModel.h"
#include "ui/SectionColor.h"

namespace vesko {

namespace {

/// Like the bands that lie in them. Green is the free space. The remainder has the colour that the legend
/// gives to the used space: it is that space as far as nothing explains it.
SegmentColor bucketColor(std::string_view id) {
    if (id == "applications") return SegmentColor::cyan;
    if (id == "documents") return SegmentColor::pink;
    if (id == "media") return SegmentColor::slate;
    if (id == "library") return SegmentColor::purple;
    return SegmentColor::warning;
}

void describeVolume(HomeScreenState& state, const HomeViewModel& home) {
    if (home.volume.revision() == 0) return;
    const std::string available = formatBytes(home.volume->availableBytes);
    const std::string total = formatBytes(home.volume->totalBytes);
    state.availableLine = localized("home.availableAmount %@", available);
    state.volumeLine = localized("home.volumeSummary %@ %@", total, home.volume->volumeName);
    state.freeSpaceLine = localized("sidebar.freeSpace %1$@ %2$@", available, total);
}

HomeRow bucketRow(const StorageCategoryBucket& bucket, const HomeViewModel& home) {
    return {.id = bucket.id,
            .title = localized(bucket.titleKey),
            .detail = {},
            .icon = bucket.icon,
            .amount = formatBytes(bucket.bytes),
            .tint = bucketColor(bucket.id),
            .isBusy = home.pendingBucketIDs->contains(bucket.id),
            .isSelected = *home.selectedBucketID == bucket.id};
}

HomeRow summaryRow(const ConsultantCategorySummary& summary) {
    return {.id = summary.category.id,
            .title = consultantCategoryTitle(summary.category.id),
            .detail = consultantCategoryExplanation(summary.category.id),
            .icon = summary.category.icon,
            .amount = formatBytes(summary.totalBytes),
            .tint = sectionColor(summary.category.section.id),
            .safety = summary.aggregatedSafety};
}

void describeDashboard(HomeScreenState& state, const HomeViewModel& home) {
    if (!home.dashboard->has_value()) return;
    const StorageDashboard& dashboard = **home.dashboard;
    state.hasDashboard = true;
    state.storageSubtitle = localized("home.storage.subtitle %@", home.volume->volumeName);
    for (const StorageCategoryBucket& bucket : dashboard.buckets) {
        state.buckets.push_back(bucketRow(bucket, home));
        const HomeRow& row = state.buckets.back();
        state.segments.push_back({row.id, row.title, bucket.bytes, row.tint, true});
    }
    state.legend = home.legendSegments();
    state.segments.push_back(state.legend.back());
    if (!dashboard.cleanupInsights || dashboard.cleanupInsights->categories.empty()) return;
    for (const ConsultantCategorySummary& summary : dashboard.cleanupInsights->categories)
        state.opportunities.push_back(summaryRow(summary));
    state.opportunitiesSubtitle = localized("home.storage.cleanupOpportunities.subtitle %@",
                                            formatBytes(dashboard.cleanupInsights->explainedBytes));
}

void describeShortcuts(HomeScreenState& state, const CleanupViewModel& cleanup) {
    const std::int64_t found = *cleanup.foundTotalBytes;
    state.reviewSubtitle = found >= 1
                               ? localized("home.shortcut.reviewCleanup.subtitle %@", formatBytes(found))
                               : localized("home.shortcut.reviewCleanup.subtitleEmpty");
    const bool isScanning = cleanup.phase->kind == CleanupPhase::Kind::scanning;
    state.scanSubtitle =
        localized(isScanning ? "home.shortcut.scanNow.running" : "home.shortcut.scanNow.subtitle");
    state.canScan = !cleanup.phase->isBusy();
}

void describeInspector(HomeScreenState& state, const HomeViewModel& home) {
    if (!home.selectedBucketID->has_value()) return;
    const std::optional<StorageCategoryBucket> bucket = home.bucket(**home.selectedBucketID);
    if (!bucket) return;
    HomeInspectorState& inspector = state.inspector.emplace();
    inspector.bucket = bucketRow(*bucket, home);
    inspector.explanation = localized("home.storage.bucket." + bucket->id + ".explanation");
    for (const std::string& path : bucket->paths) inspector.paths.push_back(escapedForDisplay(path));
    std::int64_t recoverable = 0;
    for (const ConsultantCategorySummary& summary : home.cleanupSummaries(*bucket)) {
        recoverable += summary.totalBytes;
        inspector.summaries.push_back(summaryRow(summary));
    }
    if (recoverable >= 1) inspector.foundAmount = formatBytes(recoverable);
}

} // namespace

HomeScreenState describe(const HomeViewModel& home, const CleanupViewModel& cleanup) {
    HomeScreenState state;
    describeVolume(state, home);
    describeDashboard(state, home);
    describeShortcuts(state, cleanup);
    describeInspector(state, home);
    return state;
}

} // namespace vesko
