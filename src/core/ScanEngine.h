#pragma once
#include "base/Date.h"
#include "base/FileURL.h"
#include "concurrency/AsyncStream.h"
#include "concurrency/TaskContext.h"
#include "core/CommandRunning.h"
#include "core/ProbeFingerprint.h"
#include "core/ScanProbe.h"
#include "core/ScanRecords.h"
#include "core/SignificanceEngine.h"
#include "core/SizeCalculating.h"
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>

namespace vesko {

using ProbeIDs = std::unordered_set<std::string>;

/// Runs a list of probes, a few at a time, and tells what happens as a stream of events. A value for one
/// scan.
struct ScanEngine {
    ProbeList probes; ///< in the order of starting
    std::shared_ptr<const SizeCalculating> size;
    SignificanceEngine significanceEngine;
    std::int64_t maxConcurrency = 5;       ///< most probes in flight; below 1 nothing starts
    std::optional<ProbeIDs> probeIDsToRun; ///< present: only these run
    std::optional<std::unordered_set<std::string>> demotedPaths; ///< absent: those of the store
    std::optional<FileURL> home;                                 ///< absent: the current user's
    std::shared_ptr<const CommandRunning> runner; ///< absent: a ScanCommandRunner of the scan's own
    const DateSource* dates = &systemDates();     ///< outlives the scan

    /// Starts the scan at once and gives its events. Called on the home thread of `context`; everything that
    /// blocks runs on its workers. ProbeStarted comes for the first probes in their order, then one
    /// ProbeFinished each, in finishing order, followed by the next ProbeStarted while probes remain;
    /// Finalize comes once and last. The stream keeps what nobody has read yet. Dropping it, or cancelling
    /// its reader, cancels the scan: no further probe starts, those in flight are told.
    AsyncStream<ScanDelta> scan(TaskContext context) const;

    /// The ids of the probes that a scan would run.
    ProbeIDs plannedProbeIDs() const;
    /// The probes that a scan would run, in order.
    ProbeList plannedProbes() const;
};

/// The paths that probes must leave to others. No path is claimed: overlap is settled when the report is
/// made.
std::unordered_set<std::string> claimedPaths(const ProbeList& probes, const FileURL& home);
/// An entry for every probe, each empty: no probe says what it depends on.
ProbeFingerprints currentFingerprints(const ProbeList& probes, const FileURL& home);
/// The probes that have to run again: all but those whose fingerprint tells something and has not changed.
ProbeIDs probesToValidate(const ProbeFingerprints& cached, const ProbeFingerprints& current,
                          const ProbeList& probes);

} // namespace vesko
