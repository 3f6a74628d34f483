#pragma once

#include "concurrency/Executor.h"

#include <chrono>
#include <cstddef>
#include <memory>

namespace vesko {

// How many threads a WorkerPool has. Workers mostly wait, for a disk or a child process, so there may be many
// more of them than processors.
struct WorkerPoolLimits {
    std::size_t prompt = 32; // up to here a call that finds no idle worker gets a new one at once
    std::size_t most = 256;  // up to here new workers start while no call is taken for the time of a stall
    std::chrono::milliseconds stall{20};
    std::chrono::milliseconds idle{10'000}; // a worker that finds nothing to do for so long ends
};

// Threads for blocking calls. A blocked call never keeps another waiting while the limits allow one more
// worker. A closure runs with the stop token that was current where it was posted (see CurrentTask.h).
class WorkerPool : public Executor {
public:
    explicit WorkerPool(WorkerPoolLimits limits = {});
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;
    // Runs what was posted and joins all workers, unless they were left behind.
    ~WorkerPool() override;

    void post(std::function<void()> closure) override;

    // For the program's end: drops what has not begun, lets idle workers go, and leaves those that are
    // blocked behind, never joined. What they finish later reaches no home loop any more. Gives their number;
    // while it is not 0, what their closures use must not be destroyed, so the process ends by std::_Exit.
    // Closures posted afterwards are dropped.
    std::size_t abandon();

    // Live workers, idle ones included.
    std::size_t threads() const;

private:
    struct State;
    std::shared_ptr<State> state_; // shared with the workers, which may outlive the pool
};

} // namespace vesko
