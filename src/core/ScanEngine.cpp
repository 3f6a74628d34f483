#include "core/ScanEngine.h"

#include "base/CheckedSum.h"
#include "base/Paths.h"
#include "concurrency/Concurrency.h"
#include "core/GroupBuilders.h"
#include "core/InstalledApplications.h"
#include "enrichment/DemotedPathsStore.h"
#include "probes/ScanCommandRunner.h"
#include <algorithm>
#include <exception>
#include <utility>
#include <vector>

namespace vesko {
namespace {

using Events = AsyncStream<ScanDelta>::Producer;

/// A probe's failure is a text of its result; an exception that escapes one counts as such.
ProbeResult runGuarded(const ScanProbe& probe, const ProbeContext& context) {
    try {
        return probe.run(context);
    } catch (const std::exception& error) {
        return {std::nullopt, {error.what()}};
    }
}

std::unordered_set<std::string> storedDemotedPaths() {
    return DemotedPathsStore(DemotedPathsStore::defaultFileURL()).load();
}

/// What one scan keeps between its events. Lives in the scan's task and belongs to its home thread.
class RunningScan {
public:
    RunningScan(ScanEngine engine, TaskContext context, Events events)
        : engine_(std::move(engine)), context_(std::move(context)), events_(std::move(events)),
          planned_(engine_.plannedProbes()) {}

    Task<void> carryOut() {
        co_await makeContext();
        const auto body = [this](TaskGroup<ProbeResult>& group) { return runProbes(group); };
        co_await withTaskGroup<ProbeResult>(body);
        ScanReport report = co_await makeReport();
        events_.yield(Finalize{std::move(report)});
        events_.finish();
    }

private:
    Task<void> makeContext() {
        auto made = std::make_shared<ProbeContext>();
        made->home = engine_.home ? *engine_.home : homeFolder();
        auto reading = offload([this, &made = *made] {
            made.demotedPaths = engine_.demotedPaths ? *engine_.demotedPaths : storedDemotedPaths();
            made.installedBundleIDs = installedBundleIDs();
        });
        co_await reading;
        made->now = engine_.dates->now();
        made->size = engine_.size;
        made->claimedPaths = claimedPaths(planned_, made->home);
        made->runner = engine_.runner ? engine_.runner : std::make_shared<const ScanCommandRunner>();
        made->workers = context_.workers;
        probeContext_ = std::move(made);
    }

    Task<void> runProbes(TaskGroup<ProbeResult>& group) {
        const TaskContext task = co_await currentContext();
        const std::int64_t initial =
            std::clamp<std::int64_t>(engine_.maxConcurrency, 0, static_cast<std::int64_t>(planned_.size()));
        while (next_ < static_cast<std::size_t>(initial)) startNext(group);
        for (;;) {
            std::optional<Outcome<ProbeResult>> finished = co_await group.next();
            if (!finished) break;
            if (task.stop.stopRequested()) {
                group.cancelAll();
                break;
            }
            take(finished->take());
            if (next_ < planned_.size()) startNext(group);
        }
    }

    void startNext(TaskGroup<ProbeResult>& group) {
        const std::shared_ptr<const ScanProbe> probe = planned_[next_++];
        const std::string& id = probe->metadata().id;
        events_.yield(ProbeStarted{id, probeTitle(id)});
        group.add([probe, context = probeContext_] { return runGuarded(*probe, *context); });
    }

    void take(ProbeResult result) {
        ++completed_;
        errors_.insert(errors_.end(), result.errors.begin(), result.errors.end());
        if (result.group) {
            foundBytes_ = checkedSum(foundBytes_, groupBytes(*result.group));
            candidates_ += static_cast<std::int64_t>(result.group->items.size());
            groups_.push_back(*result.group);
        }
        ScanProgress progress = progressAfter(result.group);
        events_.yield(ProbeFinished{std::move(result.group), std::move(progress)});
    }

    ScanProgress progressAfter(const std::optional<CleanupGroup>& group) const {
        ScanProgress progress;
        if (group) progress.currentPath = group->title;
        progress.directoriesVisited = completed_;
        progress.bytesIndexed = foundBytes_;
        progress.candidatesFound = candidates_;
        const auto total = static_cast<double>(planned_.size());
        progress.estimatedFraction =
            planned_.empty() ? 1.0 : std::min(static_cast<double>(completed_) / total, 0.99);
        return progress;
    }

    /// Off the home thread: over 100,000 items it takes longer than a frame.
    Task<ScanReport> makeReport() {
        auto work = offload([judge = engine_.significanceEngine, groups = std::move(groups_),
                             errors = std::move(errors_), dates = engine_.dates]() mutable {
            return judge.evaluate(std::move(groups), std::move(errors), *dates);
        });
        co_return co_await work;
    }

    ScanEngine engine_;
    TaskContext context_;
    Events events_;
    ProbeList planned_;
    std::shared_ptr<const ProbeContext> probeContext_;
    std::size_t next_ = 0;
    std::int64_t completed_ = 0;
    std::int64_t foundBytes_ = 0;
    std::int64_t candidates_ = 0;
    std::vector<CleanupGroup> groups_;
    std::vector<std::string> errors_;
};

} // namespace

AsyncStream<ScanDelta> ScanEngine::scan(TaskContext context) const {
    return AsyncStream<ScanDelta>([this, &context](Events events) {
        auto running = std::make_shared<RunningScan>(*this, context, events);
        const TaskHandle<void> task = spawn(context, [running] { return running->carryOut(); });
        events.onTermination([task](StreamEnd) { task.cancel(); });
    });
}

ProbeList ScanEngine::plannedProbes() const {
    if (!probeIDsToRun) return probes;
    ProbeList planned;
    for (const auto& probe : probes)
        if (probeIDsToRun->contains(probe->metadata().id)) planned.push_back(probe);
    return planned;
}

ProbeIDs ScanEngine::plannedProbeIDs() const {
    ProbeIDs ids;
    for (const auto& probe : plannedProbes()) ids.insert(probe->metadata().id);
    return ids;
}

std::unordered_set<std::string> claimedPaths(const ProbeList&, const FileURL&) { return {}; }

ProbeFingerprints currentFingerprints(const ProbeList& probes, const FileURL&) {
    ProbeFingerprints fingerprints;
    for (const auto& probe : probes) fingerprints.emplace(probe->metadata().id, ProbeFingerprint());
    return fingerprints;
}

ProbeIDs probesToValidate(const ProbeFingerprints& cached, const ProbeFingerprints& current,
                          const ProbeList& probes) {
    ProbeIDs ids;
    for (const auto& probe : probes) {
        const std::string& id = probe->metadata().id;
        const auto now = current.find(id);
        const auto then = cached.find(id);
        const bool isKnownUnchanged = now != current.end() && !now->second.pathMtimes.empty() &&
                                      then != cached.end() && now->second == then->second;
        if (!isKnownUnchanged) ids.insert(id);
    }
    return ids;
}

} // namespace vesko
