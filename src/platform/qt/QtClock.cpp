#include "platform/qt/QtClock.h"

#include "platform/posix/ContinuousTime.h"

namespace vesko {

QtClock::QtClock() : timer_([this] { runDue(); }) {}

Instant QtClock::now() const { return continuousNow(); }

Clock::Id QtClock::at(Instant instant, std::function<void()> callback) {
    const Id id = ++lastId_;
    const auto entry = callbacks_.emplace(std::pair{instant, id}, std::move(callback)).first;
    instants_.emplace(id, instant);
    if (entry == callbacks_.begin()) setTimer();
    return id;
}

void QtClock::cancel(Id id) {
    const auto found = instants_.find(id);
    if (found == instants_.end()) return;
    const auto entry = callbacks_.find({found->second, id});
    const bool wasFirst = entry == callbacks_.begin();
    callbacks_.erase(entry);
    instants_.erase(found);
    if (wasFirst) setTimer();
}

// Callbacks may set and cancel others, so the first is looked up anew each time. What they set for now waits
// for the next turn of the loop.
void QtClock::runDue() {
    const Instant due = now();
    const Id last = lastId_;
    for (auto first = callbacks_.begin(); first != callbacks_.end(); first = callbacks_.begin()) {
        const auto [instant, id] = first->first;
        if (instant > due || id > last) break;
        const auto callback = std::move(first->second);
        callbacks_.erase(first);
        instants_.erase(id);
        callback();
    }
    setTimer();
}

void QtClock::setTimer() {
    if (callbacks_.empty()) {
        timer_.clear();
    } else {
        timer_.set(callbacks_.begin()->first.first);
    }
}

} // namespace vesko
