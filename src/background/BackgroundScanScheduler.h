#pragma once
#include "background/PeriodicActivity.h"
#include "concurrency/Task.h"
#include "concurrency/TaskContext.h"
#include <functional>
#include <memory>

namespace vesko {

/// What a scheduler stands on.
struct BackgroundScanSchedulerParts {
    TaskContext tasks; ///< of the main thread; its stop token is not used
    PeriodicActivityMaker makeActivity;
    std::function<bool()> hasFullDiskAccess;
    std::function<bool()> isEnabled;
};

/// Decides whether a turn of the periodic activity may start something, and ends the turn in time. Main
/// thread only, the activity's calls aside. Always owned by a shared pointer; one object for the life of the
/// program.
///
/// A turn that must not start anything is over at once, without a trace: it is never put off, as the next one
/// comes by itself.
class BackgroundScanScheduler : public std::enable_shared_from_this<BackgroundScanScheduler> {
public:
    static constexpr std::chrono::seconds interval{21'600};
    static constexpr std::chrono::seconds tolerance{7'200};
    /// What a turn may take. What it started may go on, the platform is told that it is finished.
    static constexpr std::chrono::seconds limit{300};

    /// Makes the activity and schedules nothing yet.
    explicit BackgroundScanScheduler(BackgroundScanSchedulerParts parts);
    ~BackgroundScanScheduler();
    BackgroundScanScheduler(const BackgroundScanScheduler&) = delete;
    BackgroundScanScheduler& operator=(const BackgroundScanScheduler&) = delete;

    /// Whether something goes on already that a turn must not meet.
    std::function<bool()> isScanActive = [] { return false; };
    /// What a turn runs; nothing when empty.
    std::function<Task<void>()> onFire;

    /// A second call does nothing.
    void schedule();

private:
    class Completion;
    struct Door;

    bool mayFire() const;
    Task<void> fire();

    BackgroundScanSchedulerParts parts_;
    std::shared_ptr<Door> door_;
    std::unique_ptr<PeriodicActivity> activity_;
    bool hasScheduled_ = false;
};

} // namespace vesko
