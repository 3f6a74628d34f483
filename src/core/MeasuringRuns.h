#pragma once
#include <memory>

namespace vesko {

class MeasuredTrees;
class TreeReadings;

/// Begins runs of measurements, scans and loads of the dashboard, that share their readings where they
/// overlap in time. A run uses what any of them began to read after it began itself, never anything older, so
/// that each finds what it would find alone. What no living run may use is let go. Any thread; the platform
/// layer implements it.
class MeasuringRuns {
public:
    MeasuringRuns();
    MeasuringRuns(const MeasuringRuns&) = delete;
    MeasuringRuns& operator=(const MeasuringRuns&) = delete;
    ~MeasuringRuns();

    /// The run ends with what is returned.
    std::shared_ptr<MeasuredTrees> begin() const;

private:
    std::shared_ptr<TreeReadings> readings_;
};

} // namespace vesko
