#include "InotifyEventStream.h"

#include "ChangeTracker.h"
#include <algorithm>
#include <array>
#include <cerrno>
#include <condition_variable>
#include <cstdint>
#include <ctime>
#include <mutex>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace vesko {
namespace {

using Clock = std::chrono::steady_clock;

/// After each reading the queue is left alone for a moment: writing one file makes thousands of events, of
/// which the system merges those that follow each other.
constexpr auto readingPause = std::chrono::milliseconds(20);

/// The clock that file systems take their dates from.
std::int64_t fileSystemTime() {
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
    return std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

/// What the person does goes before. The number of a thread stands for it alone (setpriority(2)).
void beModest() {
    constexpr int niceness = 5;
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), niceness);
}

/// A descriptor that becomes readable.
class Alarm {
public:
    Alarm() : descriptor_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}
    ~Alarm() {
        if (descriptor_ >= 0) ::close(descriptor_);
    }
    Alarm(const Alarm&) = delete;
    Alarm& operator=(const Alarm&) = delete;

    int descriptor() const noexcept { return descriptor_; }
    void ring() const noexcept { ::eventfd_write(descriptor_, 1); }

private:
    int descriptor_;
};

} // namespace

/// Everything that the thread touches, so that a thread which is left behind finds it still there.
struct InotifyEventStream::State {
    State(const std::vector<std::string>& paths, double latencySeconds, FileEvents receiver,
          const Options& options)
        : tracker(paths, options.mostWatches, fileSystemTime(), isEnding),
          latency(std::chrono::duration_cast<Duration>(
              std::chrono::duration<double>(std::max(latencySeconds, 0.0)))),
          pollPeriod(options.pollPeriod), onEvents(std::move(receiver)) {}

    void run();
    void tellChanges();
    void publishFigures();
    /// Until something is to be done; whether there are events to read.
    bool wait(Clock::time_point now) const;
    Clock::time_point nextMoment() const;

    Alarm alarm;
    std::atomic<bool> isEnding = false;
    /// Held while the callback runs, which may destroy the stream.
    std::recursive_mutex telling;

    // The thread's own.
    ChangeTracker tracker;
    Duration latency;
    Duration pollPeriod;
    FileEvents onEvents;
    Clock::time_point nextRound = Clock::now() + pollPeriod;
    Clock::time_point nextTelling = Clock::time_point::min(); ///< a quiet spell lies behind that
    Clock::time_point nextReading = Clock::time_point::min();

    mutable std::mutex mutex; ///< for what follows
    std::condition_variable ended;
    bool hasEnded = false;
    Figures figures;
    std::thread thread;
};

void InotifyEventStream::State::run() {
    beModest();
    while (!isEnding) {
        const Clock::time_point now = Clock::now();
        if (now >= nextRound) {
            tracker.beginRound();
            nextRound = now + pollPeriod;
        }
        if (tracker.hasWork()) tracker.work();
        publishFigures();
        if (tracker.hasChanges() && Clock::now() >= nextTelling) tellChanges();
        if (wait(Clock::now()) && tracker.readEvents()) nextReading = Clock::now() + readingPause;
    }
    const std::lock_guard lock(mutex);
    hasEnded = true;
    ended.notify_all();
}

void InotifyEventStream::State::tellChanges() {
    const std::vector<std::string> changes = tracker.takeChanges();
    {
        const std::lock_guard lock(telling);
        if (!isEnding) onEvents(changes);
    }
    nextTelling = Clock::now() + latency;
}

void InotifyEventStream::State::publishFigures() {
    const std::lock_guard lock(mutex);
    figures = {!tracker.hasWork(), tracker.folderCount(), tracker.watchCount()};
}

Clock::time_point InotifyEventStream::State::nextMoment() const {
    if (tracker.hasWork()) return Clock::time_point::min();
    return tracker.hasChanges() ? std::min(nextRound, nextTelling) : nextRound;
}

bool InotifyEventStream::State::wait(Clock::time_point now) const {
    const bool isPausing = now < nextReading;
    const Clock::time_point until = isPausing ? std::min(nextMoment(), nextReading) : nextMoment();
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(std::max(until, now) - now);
    std::array<pollfd, 2> wanted{{{alarm.descriptor(), POLLIN, 0}, {tracker.descriptor(), POLLIN, 0}}};
    const nfds_t count = isPausing ? 1 : 2;
    const int ready = ::poll(wanted.data(), count, static_cast<int>(left.count()));
    return ready > 0 && count == 2 && (wanted[1].revents & POLLIN) != 0;
}

std::unique_ptr<InotifyEventStream> InotifyEventStream::make(const std::vector<std::string>& paths,
                                                             double latency, FileEvents onEvents,
                                                             const Options& options) {
    auto state = std::make_shared<State>(paths, latency, std::move(onEvents), options);
    if (state->alarm.descriptor() < 0) return nullptr;
    state->thread = std::thread([state] { state->run(); });
    return std::unique_ptr<InotifyEventStream>(new InotifyEventStream(std::move(state)));
}

InotifyEventStream::~InotifyEventStream() {
    constexpr auto patience = std::chrono::seconds(1);
    {
        const std::lock_guard lock(state_->telling);
        state_->isEnding = true;
    }
    state_->alarm.ring();
    if (state_->thread.get_id() == std::this_thread::get_id()) {
        state_->thread.detach();
        return;
    }
    std::unique_lock lock(state_->mutex);
    const bool hasEnded = state_->ended.wait_for(lock, patience, [this] { return state_->hasEnded; });
    lock.unlock();
    if (hasEnded)
        state_->thread.join();
    else
        state_->thread.detach();
}

InotifyEventStream::Figures InotifyEventStream::figures() const {
    const std::lock_guard lock(state_->mutex);
    return state_->figures;
}

FileEventStreamMaker platformFileEvents() {
    return [](const std::vector<std::string>& paths, double latency,
              FileEvents onEvents) -> std::unique_ptr<FileEventStream> {
        InotifyEventStream::Options options;
        options.mostWatches = fairShareOfWatches();
        return InotifyEventStream::make(paths, latency, std::move(onEvents), options);
    };
}

} // namespace vesko
