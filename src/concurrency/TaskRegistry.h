#pragma once

#include "concurrency/Clock.h"
#include "concurrency/StopToken.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>

namespace vesko {

// Knows the tasks that were spawned and have not ended, so that the program's end can cancel and finish them.
// All operations may be called from any thread. Tasks may outlive the registry.
class TaskRegistry {
    struct State {
        std::mutex mutex;
        std::map<std::uint64_t, StopSource> live;
        std::uint64_t last = 0;
    };

public:
    // Keeps a task entered for as long as it lives.
    class Entry {
    public:
        Entry() = default;
        Entry(Entry&& other) noexcept = default;
        Entry& operator=(Entry&&) = delete;
        ~Entry();

    private:
        friend class TaskRegistry;
        Entry(std::shared_ptr<State> state, std::uint64_t id);
        std::shared_ptr<State> state_;
        std::uint64_t id_ = 0;
    };

    Entry enter(StopSource stop);
    // Requests the stop of every live task; a task that is spawned afterwards is not touched.
    void cancelAll();
    bool empty() const { return size() == 0; }
    std::size_t size() const;

private:
    std::shared_ptr<State> state_ = std::make_shared<State>();
};

// Ends the live tasks when the program ends: cancels them, also those that they spawn while ending, and runs
// the home loop until none is left or the limit (in real time) has passed. The limit leaves room for what
// else has to happen in the two seconds that quitting may take. False: some tasks still wait for a worker
// that is blocked; leave the workers behind (WorkerPool::abandon) and end the process without destroying what
// they use.
bool shutDown(TaskRegistry& registry, const std::function<void()>& runLoopOnce,
              Duration limit = std::chrono::milliseconds(1500));

} // namespace vesko
