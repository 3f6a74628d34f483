#pragma once
#include "base/Date.h"
#include "base/FileURL.h"
#include "core/CleanupGroup.h"
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace vesko {

/// full: from nothing. validation: over the groups that are on screen already, which stay there meanwhile.
enum class ScanMode { full, validation };

/// Where a running scan stands, as the screens see it.
enum class ScanPhase { idle, scanning, finalizing };

/// Numbers for the progress banner, sent with each finished probe.
struct ScanProgress {
    std::string currentPath; ///< title of the group just finished; empty when that probe found none
    std::int64_t directoriesVisited = 0; ///< probes finished so far
    std::int64_t bytesIndexed = 0;       ///< bytes of all items so far, before anything is taken out
    std::int64_t candidatesFound = 0;    ///< items so far
    double estimatedFraction = 0;        ///< 0 to 0.99 while probes are reported

    friend bool operator==(const ScanProgress&, const ScanProgress&) = default;
};

/// The outcome of a scan.
struct ScanReport {
    std::vector<CleanupGroup> groups; ///< largest first
    std::int64_t foundTotalBytes = 0;
    std::vector<std::string> errors;
    Date date; ///< when the report was made

    friend bool operator==(const ScanReport&, const ScanReport&) = default;
};

struct ProbeStarted {
    std::string id;
    std::string title;
    friend bool operator==(const ProbeStarted&, const ProbeStarted&) = default;
};
struct ProbeFinished {
    std::optional<CleanupGroup> group;
    ScanProgress progress;
    friend bool operator==(const ProbeFinished&, const ProbeFinished&) = default;
};
struct Finalize {
    ScanReport report;
    friend bool operator==(const Finalize&, const Finalize&) = default;
};

/// One event of a scan's stream; Finalize comes once and last.
using ScanDelta = std::variant<ProbeStarted, ProbeFinished, Finalize>;

/// An item put before the review pass.
struct ScanReviewCandidate {
    FileURL url;
    std::int64_t size = 0;
    std::string name;
    bool isDirectory = false;
    std::optional<Date> modificationDate;

    friend bool operator==(const ScanReviewCandidate&, const ScanReviewCandidate&) = default;
};

} // namespace vesko
