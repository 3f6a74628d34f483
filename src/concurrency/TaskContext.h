#pragma once

#include "concurrency/Clock.h"
#include "concurrency/Executor.h"
#include "concurrency/StopToken.h"

namespace vesko {

class TaskRegistry;

// Where a task runs and what it may use. It is handed down from a task to the tasks that it awaits.
// What the pointers show must outlive the task.
struct TaskContext {
    Executor* home = nullptr;         // where the coroutine runs; one thread
    Executor* workers = nullptr;      // where blocking calls go
    Clock* clock = nullptr;           // what sleepFor waits by; serves the home thread
    StopToken stop;                   // the task's own cancellation
    TaskRegistry* registry = nullptr; // where spawned tasks are entered; may be missing
};

} // namespace vesko
