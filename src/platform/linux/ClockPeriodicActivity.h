#pragma once
#include "background/PeriodicActivity.h"

namespace vesko {

/// A periodic activity for a system without a service for it: one timer on the program's continuous clock and
/// nothing in between. A turn whose time passed while the machine was asleep comes on waking. Turns keep
/// their beat; one that is late by more than the tolerance begins a new beat, so that the next does not
/// follow on its heels. Made, scheduled and destroyed on the home thread, which it calls its block on.
class ClockPeriodicActivity final : public PeriodicActivity {
public:
    ClockPeriodicActivity(PeriodicActivitySettings settings, const TaskContext& tasks);
    ~ClockPeriodicActivity() override;

    void schedule(Block block) override;

private:
    struct Turns;

    std::shared_ptr<Turns> turns_; ///< what a turn that is not finished yet holds on to
};

} // namespace vesko
