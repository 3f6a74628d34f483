#include "ClockPeriodicActivity.h"

#include "concurrency/Clock.h"
#include "concurrency/Executor.h"
#include <utility>

namespace vesko {

/// Home thread only; it is gone for a turn that is finished later than the activity.
struct ClockPeriodicActivity::Turns : std::enable_shared_from_this<Turns> {
    Turns(PeriodicActivitySettings given, TaskContext context)
        : settings(std::move(given)), tasks(std::move(context)) {}

    void waitForNext() {
        timer = tasks.clock->at(due, [self = weak_from_this()] {
            if (const auto turns = self.lock()) turns->fire();
        });
    }

    void fire() {
        timer = 0;
        const Instant now = tasks.clock->now();
        due = (now - due > settings.tolerance ? now : due) + settings.interval;
        // The block may end the activity.
        const auto kept = shared_from_this();
        block([self = weak_from_this(), home = tasks.home] {
            home->post([self] {
                const auto turns = self.lock();
                if (turns && turns->settings.repeats && turns->timer == 0) turns->waitForNext();
            });
        });
    }

    const PeriodicActivitySettings settings;
    const TaskContext tasks;
    Block block;
    Instant due;
    Clock::Id timer = 0; ///< 0: a turn is running, or there is none to come
};

ClockPeriodicActivity::ClockPeriodicActivity(PeriodicActivitySettings settings, const TaskContext& tasks)
    : turns_(std::make_shared<Turns>(std::move(settings), tasks)) {}

ClockPeriodicActivity::~ClockPeriodicActivity() {
    if (turns_->timer != 0) turns_->tasks.clock->cancel(turns_->timer);
}

void ClockPeriodicActivity::schedule(Block block) {
    turns_->block = std::move(block);
    turns_->due = turns_->tasks.clock->now() + turns_->settings.interval;
    turns_->waitForNext();
}

PeriodicActivityMaker platformPeriodicActivity(const TaskContext& tasks) {
    return [tasks](const PeriodicActivitySettings& settings) {
        return std::make_unique<ClockPeriodicActivity>(settings, tasks);
    };
}

} // namespace vesko
