#include "orchestration/CleanupViewModel.h"

#include "concurrency/Concurrency.h"
#include "core/GroupBuilders.h"
#include "orchestration/NextTurn.h"
#include "orchestration/ValidationMerge.h"
#include <algorithm>
#include <utility>

namespace vesko {
namespace {

/// Items that are given names in one go: well below what the eye notices.
constexpr std::size_t seedSlice = 2000;

} // namespace

/// The heavy steps work on a list aside. Only when all of it is ready does the screen change, in one go, so
/// that a scan which is cancelled meanwhile leaves what it had found and nothing half-made. False: it was.
Task<bool> CleanupViewModel::finalizeScan(ScanReport report, ScanMode mode, const ScanRun& run) {
    scanPhase = ScanPhase::finalizing;
    std::vector<CleanupGroup> list = report.groups;
    if (mode == ScanMode::validation) {
        auto merge =
            offload([cached = validationCachedGroups_, fresh = report.groups, ran = validationRanProbeIDs_] {
                return mergeValidationGroups(cached, fresh, ran);
            });
        list = co_await merge;
    }
    const bool isSeeded = co_await seedInSlices(list, run.stop);
    if (!isSeeded) co_return false;
    auto judge = offload([engine = significanceEngine_, list, dates = parts_.dates]() mutable {
        return engine.evaluate(std::move(list), {}, *dates);
    });
    ScanReport judged = co_await judge;
    if (run.isCancelled()) co_return false;

    groups = std::move(judged.groups);
    figures_.keepOnly(*groups);
    verdicts_.keepOnly(*groups);
    foundTotalBytes = judged.foundTotalBytes;
    lastScanDate = report.date;
    scanProgress = std::nullopt;
    refreshFingerprints();
    persistScanSnapshot();
    co_await evaluateAlerts();
    co_return true;
}

Task<bool> CleanupViewModel::seedInSlices(std::vector<CleanupGroup> list, StopToken stop) {
    for (const CleanupGroup& group : list) {
        const std::vector<ScannableItem>& items = group.items.values();
        for (std::size_t begin = 0; begin < items.size();) {
            if (stop.stopRequested()) co_return false;
            std::size_t end = std::min(begin + seedSlice, items.size());
            // The last item of several never comes alone: a cache of one item takes its name from the group.
            if (items.size() - end == 1) end = items.size();
            std::vector<CleanupGroup> slice{group};
            if (end - begin < items.size())
                slice[0].items =
                    ItemList(std::vector<ScannableItem>(items.begin() + static_cast<std::ptrdiff_t>(begin),
                                                        items.begin() + static_cast<std::ptrdiff_t>(end)));
            parts_.enrichmentStore->seedHeuristics(slice);
            if (end - begin > seedSlice / 4) co_await nextTurn();
            begin = end;
        }
    }
    co_return !stop.stopRequested();
}

} // namespace vesko
