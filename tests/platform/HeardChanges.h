#pragma once
#include "storage/FileEventStream.h"
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace vesko::testing {

/// What a stream has told. Waiting ends with the condition, and gives up after a time that no healthy machine
/// needs.
class HeardChanges {
public:
    using Paths = std::set<std::string>;
    using Moment = std::chrono::steady_clock::time_point;
    struct Call {
        Moment at;
        std::vector<std::string> paths;
    };

    FileEvents receiver() {
        return [this](const std::vector<std::string>& paths) {
            std::function<void()> action;
            {
                const std::lock_guard lock(mutex_);
                calls_.push_back({std::chrono::steady_clock::now(), paths});
                heard_.insert(paths.begin(), paths.end());
                action = onCall_;
            }
            told_.notify_all();
            if (action) action();
        };
    }

    /// What the stream's thread does in each further call, after noting it.
    void onCall(std::function<void()> action) {
        const std::lock_guard lock(mutex_);
        onCall_ = std::move(action);
    }

    bool waitFor(const Paths& wanted) {
        return wait([&] {
            for (const std::string& path : wanted)
                if (!heard_.contains(path)) return false;
            return true;
        });
    }
    bool waitForCalls(std::size_t count) {
        return wait([&] { return calls_.size() >= count; });
    }

    Paths heard() const {
        const std::lock_guard lock(mutex_);
        return heard_;
    }
    std::vector<Call> calls() const {
        const std::lock_guard lock(mutex_);
        return calls_;
    }
    void forgetAll() {
        const std::lock_guard lock(mutex_);
        heard_.clear();
        calls_.clear();
    }

private:
    template <class Condition> bool wait(const Condition& condition) {
        std::unique_lock lock(mutex_);
        return told_.wait_for(lock, std::chrono::seconds(20), condition);
    }

    mutable std::mutex mutex_;
    std::condition_variable told_;
    std::vector<Call> calls_;
    Paths heard_;
    std::function<void()> onCall_;
};

} // namespace vesko::testing
