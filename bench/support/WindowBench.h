#pragma once
#include "support/TempTree.h"
#include <QGuiApplication>
#include <cstdlib>
#include <optional>

namespace vesko {

/// What a measurement of the window stands on: no display, a home of its own below the temporary folder that
/// goes at the end, and the numbers of its command line. Made before anything else of the toolkit.
class WindowBench {
public:
    WindowBench(int& argc, char** argv) : argc_(argc), argv_(argv) {
        qputenv("HOME", QByteArray::fromStdString(place.folder("home").path()));
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_QUICK_BACKEND", "software");
        application_.emplace(argc, argv);
    }

    /// The word at `index` of the command line, or `otherwise` where it is shorter.
    int number(int index, int otherwise) const { return argc_ > index ? std::atoi(argv_[index]) : otherwise; }

    const testing::TempTree place;

private:
    const int& argc_; ///< the toolkit takes its own words out
    char** argv_;
    std::optional<QGuiApplication> application_;
};

/// Lets the loop of this thread turn until it is so.
template <class IsSo> void runUntil(IsSo isSo) {
    while (!isSo()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

} // namespace vesko
