#pragma once
#include <CoreServices/CoreServices.h>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace vesko::testing {

/// FSEvents and its queue. A queue does nothing by itself: a test runs what waits on it, on whichever thread.
struct FakeFileEvents {
    std::vector<std::string> calls; ///< in order
    std::vector<std::string> paths;
    double latency = -1;
    FSEventStreamCreateFlags flags = 0;
    FSEventStreamEventId since = 0;
    std::string queueLabel;
    unsigned queueClass = 0;
    bool refusesToMake = false;
    bool refusesToStart = false;

    int liveStreams = 0;
    int liveQueues = 0;

    std::mutex mutex; ///< of what waits
    std::deque<std::function<void()>> waiting;
    /// Runs between the system's look at the stream and the callback: a stream may end in between.
    std::function<void()> beforeCallback;

    /// Tells changes through the running stream, with all sorts of flags.
    void deliver(const std::vector<std::string>& changed);
    /// The same with something that is no list of texts.
    void deliverObject(CFTypeRef something);
    void runQueue();
};

FakeFileEvents& fakeFileEvents();
/// A fresh one for each test.
void resetFakeFileEvents();

} // namespace vesko::testing
