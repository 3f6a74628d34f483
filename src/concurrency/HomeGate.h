#pragma once

#include "concurrency/Executor.h"

#include <functional>
#include <mutex>

namespace vesko {

// Stands between a pool's workers and the loops that they post their results to. After close() nothing gets
// through any more, so a worker that was left behind and finishes late does not touch a loop that is gone.
class HomeGate {
public:
    // Posts, or drops the closure once the gate is closed.
    void post(Executor& home, std::function<void()> closure);
    // Waits for a post that is under way.
    void close();

private:
    std::mutex mutex_;
    bool closed_ = false;
};

// While it lives, posts of this thread to a home loop go through the gate.
class HomeGateScope {
public:
    explicit HomeGateScope(HomeGate& gate);
    HomeGateScope(const HomeGateScope&) = delete;
    HomeGateScope& operator=(const HomeGateScope&) = delete;
    ~HomeGateScope();

private:
    HomeGate* outer_;
};

// Posts to a task's home loop: through the gate of the worker that calls, or directly from any other thread.
void postHome(Executor& home, std::function<void()> closure);

} // namespace vesko
