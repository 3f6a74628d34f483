#include "concurrency/TaskRegistry.h"

#include <chrono>
#include <thread>
#include <utility>
#include <vector>

namespace vesko {

TaskRegistry::Entry::Entry(std::shared_ptr<State> state, std::uint64_t id)
    : state_(std::move(state)), id_(id) {}

TaskRegistry::Entry::~Entry() {
    if (!state_) return;
    std::lock_guard lock(state_->mutex);
    state_->live.erase(id_);
}

TaskRegistry::Entry TaskRegistry::enter(StopSource stop) {
    std::lock_guard lock(state_->mutex);
    const std::uint64_t id = ++state_->last;
    state_->live.emplace(id, std::move(stop));
    return Entry(state_, id);
}

void TaskRegistry::cancelAll() {
    std::vector<StopSource> sources;
    {
        std::lock_guard lock(state_->mutex);
        for (const auto& [id, stop] : state_->live) sources.push_back(stop);
    }
    // Outside the lock: a callback of a stop may spawn or end a task.
    for (const StopSource& stop : sources) stop.requestStop();
}

std::size_t TaskRegistry::size() const {
    std::lock_guard lock(state_->mutex);
    return state_->live.size();
}

bool shutDown(TaskRegistry& registry, const std::function<void()>& runLoopOnce, Duration limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    for (;;) {
        registry.cancelAll();
        runLoopOnce();
        if (registry.empty()) return true;
        if (std::chrono::steady_clock::now() >= end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

} // namespace vesko
