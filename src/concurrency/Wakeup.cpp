#include "concurrency/Wakeup.h"

#include "concurrency/HomeGate.h"

namespace vesko {

namespace {
constexpr unsigned claimed = 1; // somebody fires; the reason is being written
constexpr unsigned armed = 2;
constexpr unsigned fired = 4; // the reason is written
} // namespace

bool Wakeup::fire(Reason reason) {
    if ((marks_.fetch_or(claimed) & claimed) != 0) return false;
    reason_ = reason;
    if ((marks_.fetch_or(fired) & armed) != 0) resume();
    return true;
}

void Wakeup::arm() {
    if ((marks_.fetch_or(armed) & fired) != 0) resume();
}

void Wakeup::resume() {
    postHome(home_, [sleeper = sleeper_] { sleeper.resume(); });
}

} // namespace vesko
