#include "orchestration/CleanupViewModel.h"

#include "base/ByteFormat.h"
#include "base/Paths.h"
#include "base/StringCatalog.h"
#include "concurrency/Concurrency.h"
#include "execution/SystemCleanupExecutor.h"
#include "orchestration/DeletionRun.h"
#include "orchestration/RemovalRelay.h"
#include "probes/SystemCommandRunner.h"
#include <chrono>
#include <utility>

namespace vesko {
namespace {

std::string joinedLines(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        if (&line != &lines.front()) text += '\n';
        text += line;
    }
    return text;
}

/// Lets through one call in a tenth of a second, so that the boxes of 100,000 items going do not redraw the
/// list 100,000 times.
class Throttle {
public:
    bool isDue() {
        const auto now = std::chrono::steady_clock::now();
        if (now - last_ < std::chrono::milliseconds(100)) return false;
        last_ = now;
        return true;
    }

private:
    std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
};

} // namespace

Task<void> CleanupViewModel::deleteSelected(std::optional<URLSet> onlyItems) {
    const auto self = shared_from_this();
    stopEnrichment();
    if (phase->isBusy()) co_return;
    phase = CleanupPhase::cleaning();
    const TaskContext context = co_await currentContext();
    DeletionRun run(*groups, *selectedItemIDs, onlyItems ? &*onlyItems : nullptr);
    auto preparation = offload([&run] { run.prepare(); });
    co_await preparation;
    Throttle boxes;
    // The program's end stops between two items, and inside one where the removal allows it.
    while (!context.stop.stopRequested()) {
        const ScannableItem* item = run.next();
        if (!item) break;
        const std::string title = escapedForDisplay(itemTitle(*item, run.groupOfNext()));
        co_await deleteItem(run, *item, title);
        if (boxes.isDue()) dropFromSelection(run.takeGoneURLs());
    }
    dropFromSelection(run.takeGoneURLs());
    groups = run.remainingGroups();
    if (run.errors().empty() && run.deletedCount() > 0) {
        lastCleanupDate = parts_.dates->now();
        lastCleanupFreedBytes = run.freedBytes();
        persistScanSnapshot();
    }
    deletionProgress = std::nullopt;
    applyDeleteOutcome(run.deletedCount(), run.freedBytes(), run.errors());
}

Task<void> CleanupViewModel::deleteItem(DeletionRun& run, const ScannableItem& item,
                                        const std::string& title) {
    const auto tell = [this, &run, &title](std::int64_t bytesInside) {
        DeletionProgress progress = run.progress(bytesInside);
        progress.itemName = title;
        deletionProgress = std::move(progress);
    };
    tell(0);
    const auto relay = std::make_shared<RemovalRelay>(*parts_.tasks.home, tell);
    // Not the executor of the parts: that is a seam which the shipped flow leaves alone.
    auto removal = offload([&item, relay] {
        const SystemCommandRunner runner;
        return SystemCleanupExecutor().deleteItem(
            item, runner, [&relay](std::int64_t bytes, std::int64_t) { relay->report(bytes); });
    });
    const std::expected<void, CleanupError> outcome = co_await removal;
    relay->close();
    if (outcome)
        run.succeeded();
    else
        run.failed(outcome.error().localizedDescription());
}

void CleanupViewModel::dropFromSelection(const std::vector<FileURL>& urls) {
    if (urls.empty()) return;
    const auto drop = [&](URLSet& ids) {
        for (const FileURL& url : urls) ids.erase(url);
    };
    selectedItemIDs.modify(drop);
    userOverriddenIDs.modify(drop);
}

void CleanupViewModel::applyDeleteOutcome(std::int64_t deleted, std::int64_t freedBytes,
                                          const std::vector<std::string>& errors) {
    if (errors.empty()) {
        cleanupMessage = localized("cleanup.success %1$lld %2$@", deleted, formatBytes(freedBytes));
        phase = CleanupPhase::idle();
        return;
    }
    phase = CleanupPhase::error(joinedLines(errors));
    cleanupMessage = deleted < 1 ? localized("error.delete.failed")
                                 : localized("cleanup.partialFailure %1$lld %2$lld", deleted,
                                             static_cast<std::int64_t>(errors.size()));
}

} // namespace vesko
