#pragma once

#include "concurrency/Clock.h"
#include "platform/qt/WakeTimer.h"

#include <functional>
#include <map>
#include <unordered_map>
#include <utility>

namespace vesko {

// The clock of the Qt loop of the thread that makes it. A callback whose instant passed while the machine was
// asleep runs on waking.
class QtClock : public Clock {
public:
    QtClock();

    Instant now() const override;
    Id at(Instant instant, std::function<void()> callback) override;
    void cancel(Id id) override;

private:
    void runDue();
    void setTimer();

    std::map<std::pair<Instant, Id>, std::function<void()>> callbacks_;
    std::unordered_map<Id, Instant> instants_;
    Id lastId_ = 0;
    WakeTimer timer_;
};

} // namespace vesko
