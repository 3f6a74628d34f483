#pragma once

#include "concurrency/Concurrency.h"
#include "support/ManualLoop.h"

#include <condition_variable>
#include <mutex>

namespace vesko {

// What a flow needs: a loop stepped by hand, real workers and a registry.
struct Flows {
    ManualLoop loop;
    TaskRegistry registry;
    WorkerPool workers;
    TaskContext context{&loop, &workers, &loop, {}, &registry};
};

// A door that blocked calls wait at.
class Door {
public:
    void open() {
        std::lock_guard lock(mutex_);
        open_ = true;
        changed_.notify_all();
    }
    void pass() {
        std::unique_lock lock(mutex_);
        ++waiting_;
        changed_.notify_all();
        changed_.wait(lock, [&] { return open_; });
        --waiting_;
    }
    // False: fewer than that many came to the door in ten seconds.
    bool awaitWaiting(int count) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, std::chrono::seconds(10), [&] { return waiting_ >= count; });
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool open_ = false;
    int waiting_ = 0;
};

} // namespace vesko
