#include "core/BoundedSizeCalculator.h"
#include "core/MeasuredTrees.h"
#include "core/ProbeCatalog.h"
#include "core/SharedSizeCalculator.h"
#include "orchestration/CleanupViewModel.h"
#include "orchestration/ListJudgement.h"

#include "base/Paths.h"
#include "concurrency/Concurrency.h"
#include "core/GroupBuilders.h"
#include <utility>

namespace vesko {
namespace {

constexpr std::int64_t probesAtOnce = 5;
constexpr std::int64_t measurementsAtOnce = 10;

std::unordered_set<std::string> idsOf(const std::vector<CleanupGroup>& groups) {
    std::unordered_set<std::string> ids;
    for (const CleanupGroup& group : groups) ids.insert(group.id);
    return ids;
}

/// Replaces the first group of that id in its place, or puts the group at the end.
void upsert(std::vector<CleanupGroup>& groups, const CleanupGroup& group) {
    for (CleanupGroup& listed : groups) {
        if (listed.id != group.id) continue;
        listed = group;
        return;
    }
    groups.push_back(group);
}

} // namespace

Task<void> CleanupViewModel::startScan(ScanMode mode) {
    if (phase->isBusy()) co_return;
    const auto self = shared_from_this();
    cancelScan();
    phase = CleanupPhase::scanning();
    cleanupMessage = std::nullopt;
    const std::uint64_t number = ++lastScanRun_;
    const TaskHandle<void> task =
        spawn(parts_.tasks, [self, mode, number] { return self->carryOutScan(mode, number); });
    scanTask_ = task;
    co_await task.value();
}

void CleanupViewModel::cancelScan() {
    std::exchange(scanTask_, {}).cancel();
    if (phase->kind == CleanupPhase::Kind::scanning) phase = CleanupPhase::idle();
    scanPhase = ScanPhase::idle;
    scanProgress = std::nullopt;
}

Task<void> CleanupViewModel::carryOutScan(ScanMode mode, std::uint64_t number) {
    const TaskContext context = co_await currentContext();
    const ScanRun run{this, number, context.stop};
    co_await runScan(mode, run);
    // What was cancelled is off the screen already. Only a cancellation from elsewhere, such as the program's
    // end, leaves the phase for this task to reset, and only while it is still this scan's.
    if (run.isLatest()) scanPhase = ScanPhase::idle;
    if (run.isCancelled()) {
        if (run.isLatest() && phase->kind == CleanupPhase::Kind::scanning) phase = CleanupPhase::idle();
        co_return;
    }
    if (mode == ScanMode::full)
        applyDefaultSelection();
    else
        applyDefaultSelectionToNewGroups();
    startEnrichment();
    startReview();
    phase = CleanupPhase::idle();
    scanTask_ = {};
}

Task<void> CleanupViewModel::runScan(ScanMode mode, const ScanRun& run) {
    if (run.isCancelled()) co_return;
    prepareForScan(mode);
    loadEnrichmentCacheOnce();
    const ScanEngine engine = makeEngine(mode);
    if (mode == ScanMode::validation) validationRanProbeIDs_ = engine.plannedProbeIDs();
    AsyncStream<ScanDelta> stream = engine.scan(parts_.tasks);
    for (;;) {
        std::optional<ScanDelta> delta = co_await stream.next();
        if (!delta) break;
        const bool isTaken = co_await takeDelta(std::move(*delta), mode, run);
        if (isTaken) continue;
        // A delta was in hand when the cancellation was seen. A newer scan has its own word on this.
        if (run.isLatest()) scanWasPartial = true;
        break;
    }
}

void CleanupViewModel::prepareForScan(ScanMode mode) {
    if (mode == ScanMode::validation) {
        validationPreviousGroupIDs_ = idsOf(*groups);
        validationCachedGroups_ = *groups;
    } else {
        groups = {};
        foundTotalBytes = 0;
        indexedBytes = 0;
        aiDiscoveredURLs = {};
        pendingReviewCandidates = {};
    }
    scanWasPartial = false;
    scanProgress = std::nullopt;
    scanPhase = ScanPhase::scanning;
    reviewMessage = std::nullopt;
    // After a full scan everything counts as new to the alerts: the list has just been emptied.
    notificationPreviousRecoverableBytes_ = *foundTotalBytes;
    notificationPreviousGroupIDs_ = idsOf(*groups);
}

ScanEngine CleanupViewModel::makeEngine(ScanMode mode) const {
    if (parts_.scanEngineFactory) return parts_.scanEngineFactory(mode);
    ScanEngine engine;
    engine.probes = probeCatalog();
    engine.size = std::make_shared<BoundedSizeCalculator>(
        std::make_shared<SharedSizeCalculator>(parts_.measuringRuns->begin()),
        std::make_shared<SizingConcurrencyLimiter>(measurementsAtOnce));
    engine.maxConcurrency = probesAtOnce;
    engine.demotedPaths.emplace();
    if (mode == ScanMode::validation) {
        const ProbeFingerprints current = currentFingerprints(engine.probes, homeFolder());
        engine.probeIDsToRun = probesToValidate(cachedProbeFingerprints_, current, engine.probes);
    }
    return engine;
}

void CleanupViewModel::refreshFingerprints() {
    if (parts_.scanEngineFactory) return;
    cachedProbeFingerprints_ = currentFingerprints(probeCatalog(), homeFolder());
}

/// False when the delta was dropped because the scan has been cancelled.
Task<bool> CleanupViewModel::takeDelta(ScanDelta delta, ScanMode mode, const ScanRun& run) {
    if (run.isCancelled()) co_return false;
    if (const auto* started = std::get_if<ProbeStarted>(&delta)) {
        if (!scanProgress->has_value()) scanProgress = ScanProgress{started->title, 0, *indexedBytes, 0, 0};
        co_return true;
    }
    if (auto* finished = std::get_if<ProbeFinished>(&delta)) {
        const bool isTaken = co_await takeProbeFinished(std::move(*finished), run);
        co_return isTaken;
    }
    const bool isFinal = co_await finalizeScan(std::move(std::get<Finalize>(delta).report), mode, run);
    co_return isFinal;
}

Task<bool> CleanupViewModel::takeProbeFinished(ProbeFinished finished, const ScanRun& run) {
    indexedBytes = finished.progress.bytesIndexed;
    scanProgress = std::move(finished.progress);
    if (!finished.group) co_return true;
    for (;;) {
        // The dates are read and the whole list is judged on a worker; the screen gets the outcome in one
        // step.
        std::vector<CleanupGroup> list = *groups;
        upsert(list, *finished.group);
        const std::uint64_t before = groups.revision();
        auto work = offload([&, judged = std::move(list)]() mutable {
            return judgeList(significanceEngine_, std::move(judged), *finished.group, *parts_.dates);
        });
        ListJudgement judgement = co_await work;
        if (run.isCancelled()) co_return false;
        // An earlier scan's review may have moved something meanwhile.
        if (groups.revision() != before) continue;
        groups = std::move(judgement.report.groups);
        if (!judgement.candidates.empty())
            pendingReviewCandidates.modify([&](std::vector<ScanReviewCandidate>& candidates) {
                candidates.insert(candidates.end(), std::make_move_iterator(judgement.candidates.begin()),
                                  std::make_move_iterator(judgement.candidates.end()));
            });
        foundTotalBytes = judgement.report.foundTotalBytes;
        co_return true;
    }
}

} // namespace vesko
