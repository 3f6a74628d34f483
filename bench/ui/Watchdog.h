#pragma once
#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>

namespace vesko {

/// Measures the longest time that the loop of its thread was not free: a timer that wants to run every
/// millisecond notes how late it came.
class Watchdog {
public:
    Watchdog() {
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] {
            longest_ = std::max(longest_, static_cast<double>(since_.nsecsElapsed()) / 1e6 - 1);
            since_.start();
        });
        since_.start();
        timer_.start(1);
    }

    /// In milliseconds, since the last call.
    double takeLongest() {
        const double longest = std::max(longest_, static_cast<double>(since_.nsecsElapsed()) / 1e6 - 1);
        longest_ = 0;
        since_.start();
        return longest;
    }

private:
    QTimer timer_;
    QElapsedTimer since_;
    double longest_ = 0;
};

} // namespace vesko
