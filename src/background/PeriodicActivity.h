#pragma once
#include "concurrency/TaskContext.h"
#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace vesko {

/// What is to be repeated, and how.
struct PeriodicActivitySettings {
    std::string identifier; ///< tells it from the program's other activities, across starts
    bool repeats = true;
    std::chrono::seconds interval{0};  ///< from one firing to the next, on a clock that counts sleep
    std::chrono::seconds tolerance{0}; ///< how far a firing may be from its time for the machine's sake
};

/// Work that the platform starts every now and then, when it suits the machine. One that has been scheduled
/// is there until the object goes.
class PeriodicActivity {
public:
    /// To be called once when the firing's work is done. From any thread.
    using Finished = std::function<void()>;
    using Block = std::function<void(Finished finished)>;

    virtual ~PeriodicActivity() = default;
    /// From now on calls `block` at each turn, on a thread of the platform's choice; the next turn waits for
    /// the one before to be finished. To be called once.
    virtual void schedule(Block block) = 0;
};

using PeriodicActivityMaker =
    std::function<std::unique_ptr<PeriodicActivity>(const PeriodicActivitySettings& settings)>;

/// The activities of this system. The platform layer implements it. `tasks` is what an activity waits by
/// where the system has no such service; it must outlive the activities, which then belong to its home
/// thread.
PeriodicActivityMaker platformPeriodicActivity(const TaskContext& tasks);

} // namespace vesko
