#pragma once
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vesko::testing {

/// The system's background activities (NSBackgroundActivityScheduler), on a time that only the test moves.
struct FakeActivities {
    struct Activity {
        std::string identifier;
        bool repeats = false;
        double interval = 0;
        double tolerance = 0;
        bool hasOwnQuality = false; ///< whether the quality of service was changed
        bool isValid = true;

        std::function<void(std::function<void(long)>)> block;
        double due = 0;
        bool isRunning = false;
        std::vector<long> results; ///< of the turns that were finished
    };
    std::vector<std::shared_ptr<Activity>> all;
    double now = 0;

    /// Each turn begins on a thread of its own, none before the one before is finished.
    void pass(std::chrono::seconds time);
};

FakeActivities& fakeActivities();
/// A fresh one for each test.
void resetFakeActivities();

} // namespace vesko::testing
