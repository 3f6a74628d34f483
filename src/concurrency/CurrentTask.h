#pragma once

#include "concurrency/StopToken.h"

namespace vesko {

// The cancellation of the task that this thread is working for: set while offload, a task group or the worker
// pool runs a closure for it, so blocking code deep below can look without a parameter. Anywhere else, on the
// home thread too, the token is one that is never stopped.
StopToken currentStopToken();
bool currentTaskIsCancelled();

// Makes a token the current one of this thread while it lives; for code that moves work to further threads.
class CurrentTaskScope {
public:
    explicit CurrentTaskScope(StopToken token);
    CurrentTaskScope(const CurrentTaskScope&) = delete;
    CurrentTaskScope& operator=(const CurrentTaskScope&) = delete;
    ~CurrentTaskScope();

private:
    StopToken outer_;
};

} // namespace vesko
