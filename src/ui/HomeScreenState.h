#pragma once
#include "orchestration/StorageSegment.h"
#include "ui/HomeRow.h"
#include <optional>
#include <string>
#include <vector>

namespace vesko {

class CleanupViewModel;
class HomeViewModel;

/// What the inspector says of one bucket.
struct HomeInspectorState {
    HomeRow bucket;
    std::string explanation;
    std::vector<std::string> paths; ///< fit to be shown
    std::string foundAmount;        ///< empty: nothing was found
    std::vector<HomeRow> summaries;

    friend bool operator==(const HomeInspectorState&, const HomeInspectorState&) = default;
};

/// Everything that the Home screen shows, as texts in the current language.
struct HomeScreenState {
    std::string availableLine; ///< the volume's lines are empty before its first reading
    std::string volumeLine;
    std::string freeSpaceLine;

    bool hasDashboard = false; ///< without one a skeleton stands for all that follows
    std::string storageSubtitle;
    std::vector<StorageSegment> segments; ///< the buckets in order, then the free space
    std::vector<StorageSegment> legend;
    std::vector<HomeRow> buckets;
    std::vector<HomeRow> opportunities;
    std::string opportunitiesSubtitle;

    std::string reviewSubtitle;
    std::string scanSubtitle;
    bool canScan = true;

    std::optional<HomeInspectorState> inspector; ///< of the selected bucket

    friend bool operator==(const HomeScreenState&, const HomeScreenState&) = default;
};

/// Reads the view models.
HomeScreenState describe(const HomeViewModel& home, const CleanupViewModel& cleanup);

} // namespace vesko
