#pragma once
#include "orchestration/StorageSegment.h"
#include <optional>
#include <string>
#include <vector>

namespace vesko {

class CleanupViewModel;

/// Everything that the Cleanup screen shows beside its list, as texts in the current language.
struct CleanupScreenState {
    enum class Content { awaitingScan, skeleton, noResults, list };
    enum class Banner { none, preparing, progress };
    enum class Chip { none, reviewing, refining };

    Content content = Content::awaitingScan;
    bool isScanning = false;
    bool isDeleting = false;

    Banner banner = Banner::none;
    std::string scanLine;
    double scanFraction = 0;

    std::string heroFacts;
    Chip chip = Chip::none;
    std::string chipText;
    std::vector<StorageSegment> segments;

    bool hasFailed = false;
    std::string failureText; ///< one failure to a line
    bool wasPartial = false;
    std::string reviewMessage;  ///< empty: none
    std::string cleanupMessage; ///< empty: none

    std::string summaryLine;
    std::string hintLine;
    std::string recoverLabel;
    bool canRecover = false;

    std::string deletingLine; ///< empty while nothing is told of a running deletion
    std::string deletingItem;
    double deletingFraction = 0;

    std::string confirmSummary;
    std::string confirmPrompt;
    std::string confirmWord;

    bool canScan() const noexcept { return !isScanning && !isDeleting; }

    friend bool operator==(const CleanupScreenState&, const CleanupScreenState&) = default;
};

/// Reads the view model.
CleanupScreenState describe(const CleanupViewModel& model);

} // namespace vesko
