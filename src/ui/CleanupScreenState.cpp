#include "ui/CleanupScreenState.h"
#include "base/ByteFormat.h"
#include "base/Paths.h"
#include "base/StringCatalog.h"
#include "orchestration/CleanupViewModel.h"
#include <algorithm>

namespace vesko {

namespace {

using Kind = CleanupPhase::Kind;

void describeContent(CleanupScreenState& state, const CleanupViewModel& model,
                     const std::vector<CleanupGroup>& visible) {
    using Content = CleanupScreenState::Content;
    // What a cancelled first scan found is shown, although no scan has ever ended.
    if (!model.lastScanDate->has_value() && !state.isScanning && model.groups->empty()) {
        state.content = Content::awaitingScan;
    } else if (state.isScanning && model.groups->empty()) {
        state.content = Content::skeleton;
    } else if (!state.isScanning && visible.empty()) {
        state.content = Content::noResults;
    } else {
        state.content = Content::list;
    }
}

void describeScan(CleanupScreenState& state, const CleanupViewModel& model) {
    if (!state.isScanning) return;
    const std::optional<ScanProgress>& progress = *model.scanProgress;
    if (!progress) {
        state.banner = CleanupScreenState::Banner::preparing;
        state.scanLine = localized("banner.scanPreparing");
        return;
    }
    state.banner = CleanupScreenState::Banner::progress;
    state.scanLine = localized("banner.scanProgress %1$lld %2$@ %3$lld", progress->directoriesVisited,
                               formatBytes(progress->bytesIndexed), progress->candidatesFound);
    state.scanFraction = std::clamp(progress->estimatedFraction, 0.0, 1.0);
}

/// The groups whose verdict is being made. The rest of a verdict is not worked out for it: over a long list,
/// after each answer, that would be felt.
std::int64_t analyzedGroups(const CleanupViewModel& model) {
    const std::unordered_set<EnrichmentKey>& keys = *model.analyzingKeys;
    if (keys.empty()) return 0;
    const auto isAnalyzed = [&](const ScannableItem& item) { return keys.contains(item.enrichmentKey); };
    return std::ranges::count_if(*model.groups, [&](const CleanupGroup& group) {
        return std::ranges::any_of(group.items, isAnalyzed);
    });
}

void describeHero(CleanupScreenState& state, const CleanupViewModel& model,
                  const std::vector<CleanupGroup>& visible) {
    if (state.content != CleanupScreenState::Content::list) return;
    std::vector<std::string> facts;
    if (*model.indexedBytes >= 1)
        facts.push_back(localized("hero.indexed %@", formatBytes(*model.indexedBytes)));
    facts.push_back(localized("hero.candidates %@", formatBytes(model.recoverableBytes())));
    std::int64_t visibleBytes = 0;
    for (const CleanupGroup& group : visible) visibleBytes += model.groupFigures(group).totalBytes;
    if (visibleBytes < *model.foundTotalBytes) {
        facts.push_back(localized("hero.visible %@", formatBytes(visibleBytes)));
    }
    facts.push_back(localized("hero.selected %@", formatBytes(model.selectedBytes())));
    for (const std::string& fact : facts) {
        if (!state.heroFacts.empty()) state.heroFacts += " · ";
        state.heroFacts += fact;
    }
    if (*model.isReviewing) {
        state.chip = CleanupScreenState::Chip::reviewing;
        state.chipText = localized("chip.aiReviewing");
    } else if (const std::int64_t count = analyzedGroups(model); count > 0) {
        state.chip = CleanupScreenState::Chip::refining;
        state.chipText = localized("chip.aiRefining %lld", count);
    }
    state.segments = model.sectionSegments();
}

void describeStatus(CleanupScreenState& state, const CleanupViewModel& model) {
    state.hasFailed = model.phase->kind == Kind::error;
    if (state.hasFailed) state.failureText = model.phase->message;
    state.wasPartial = *model.scanWasPartial;
    state.reviewMessage = model.reviewMessage->value_or("");
    state.cleanupMessage = model.cleanupMessage->value_or("");
}

void describeActions(CleanupScreenState& state, const CleanupViewModel& model) {
    const std::int64_t selectedBytes = model.selectedBytes();
    const std::int64_t groupCount = model.selectedGroupCount();
    const std::string bytes = formatBytes(selectedBytes);
    state.summaryLine = localized("action.selectedSummary %1$@ %2$lld", bytes, groupCount);
    state.hintLine = localized(model.isAIBusy() ? "action.waitingAI" : "action.permanentWarning");
    state.recoverLabel = localized("action.recover %@", bytes);
    state.canRecover = selectedBytes > 0 && !model.phase->isBusy() && !model.isAIBusy();
    state.confirmSummary = localized("delete.confirm.summary %1$@ %2$@ %3$@", bytes,
                                     localized("delete.confirm.groupCount %lld", groupCount),
                                     localized("delete.confirm.itemCount %lld", model.selectedCount()));
    state.confirmWord = localized("delete.confirm.word");
    state.confirmPrompt = localized("delete.confirm.prompt %@", state.confirmWord);
}

void describeDeletion(CleanupScreenState& state, const CleanupViewModel& model) {
    const std::optional<DeletionProgress>& progress = *model.deletionProgress;
    if (!progress) return;
    state.deletingLine = localized("action.deleting.progress %1$lld %2$lld %3$@", progress->itemsDone,
                                   progress->itemsInAll, formatBytes(progress->bytesFreed));
    state.deletingItem = localized("action.deleting.item %@", escapedForDisplay(progress->itemName));
    const auto part = [](std::int64_t done, std::int64_t all) {
        return all > 0 ? std::clamp(static_cast<double>(done) / static_cast<double>(all), 0.0, 1.0) : 0.0;
    };
    state.deletingFraction = std::max(part(progress->bytesFreed, progress->bytesInAll),
                                      part(progress->itemsDone, progress->itemsInAll));
}

} // namespace

CleanupScreenState describe(const CleanupViewModel& model) {
    CleanupScreenState state;
    state.isScanning = model.phase->kind == Kind::scanning;
    state.isDeleting = model.phase->kind == Kind::cleaning;
    const std::vector<CleanupGroup> visible = model.filteredGroups();
    describeContent(state, model, visible);
    describeScan(state, model);
    describeHero(state, model, visible);
    describeStatus(state, model);
    describeActions(state, model);
    describeDeletion(state, model);
    return state;
}

} // namespace vesko
