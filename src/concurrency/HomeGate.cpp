#include "concurrency/HomeGate.h"

#include <utility>

namespace vesko {

namespace {
thread_local HomeGate* gateOfThisThread = nullptr;
}

void HomeGate::post(Executor& home, std::function<void()> closure) {
    std::lock_guard lock(mutex_);
    if (!closed_) home.post(std::move(closure));
}

void HomeGate::close() {
    std::lock_guard lock(mutex_);
    closed_ = true;
}

HomeGateScope::HomeGateScope(HomeGate& gate) : outer_(std::exchange(gateOfThisThread, &gate)) {}

HomeGateScope::~HomeGateScope() { gateOfThisThread = outer_; }

void postHome(Executor& home, std::function<void()> closure) {
    if (gateOfThisThread) {
        gateOfThisThread->post(home, std::move(closure));
    } else {
        home.post(std::move(closure));
    }
}

} // namespace vesko
