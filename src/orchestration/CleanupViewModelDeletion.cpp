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

/// A worker is asked for more than one item at a time, since asking takes longer than removing a small file:
/// it goes on for so long, and so the screen hears of each item before a person could tell.
constexpr std::chrono::milliseconds longestTurn{10};
constexpr std::size_t mostItemsAtOnce = 1'000;

/// Removes the items one after the other, as many as come in one turn, but one at least.
void removeInTurn(const std::vector<const ScannableItem*>& items, RemovalRelay& relay,
                  const StopToken& stop) {
    const auto begun = std::chrono::steady_clock::now();
    const SystemCommandRunner runner;
    const auto report = [&relay](std::int64_t bytes, std::int64_t) { relay.report(bytes); };
    for (const ScannableItem* item : items) {
        // Not the executor of the parts: that is a seam which the shipped flow leaves alone.
        relay.settle(SystemCleanupExecutor().deleteItem(*item, runner, report));
        if (stop.stopRequested() || std::chrono::steady_clock::now() - begun >= longestTurn) return;
    }
}

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
        const std::vector<const ScannableItem*> items = run.nextFew(mostItemsAtOnce);
        if (items.empty()) break;
        co_await deleteItems(run, items);
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

Task<void> CleanupViewModel::deleteItems(DeletionRun& run, const std::vector<const ScannableItem*>& items) {
    const auto show = [this, &run](std::int64_t bytesInside) {
        const ScannableItem* item = run.next();
        DeletionProgress progress = run.progress(bytesInside);
        progress.itemName = escapedForDisplay(itemTitle(*item, run.groupOfNext()));
        deletionProgress = std::move(progress);
    };
    std::size_t settled = 0;
    const auto take = [&](const RemovalRelay::News& news) {
        for (const RemovalRelay::Outcome& outcome : news.settled) {
            if (outcome)
                run.succeeded();
            else
                run.failed(outcome.error().localizedDescription());
            if (++settled < items.size()) show(0);
        }
        if (settled < items.size() && news.bytesInside > 0) show(news.bytesInside);
    };
    show(0);
    const auto relay = std::make_shared<RemovalRelay>(*parts_.tasks.home, take);
    auto removal = offload([&items, relay](const StopToken& stop) { removeInTurn(items, *relay, stop); });
    co_await removal;
    relay->close();
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
