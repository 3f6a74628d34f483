#pragma once
#include "core/StoragePathSizing.h"
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace vesko::testing {

/// Says what a table holds for each path, 0 without an entry, and remembers what it was asked.
class ScriptedFolderSizes final : public StoragePathSizing {
public:
    std::int64_t allocatedBytes(const FileURL& url) const override {
        if (onCall) onCall(url.path());
        const std::lock_guard lock(mutex_);
        calls_.push_back(url.path());
        const auto found = bytes.find(url.path());
        return found == bytes.end() ? 0 : found->second;
    }
    std::vector<std::string> calls() const {
        const std::lock_guard lock(mutex_);
        return calls_;
    }
    void forgetCalls() {
        const std::lock_guard lock(mutex_);
        calls_.clear();
    }

    std::map<std::string, std::int64_t> bytes;
    std::function<void(const std::string&)> onCall; ///< before each answer

private:
    mutable std::mutex mutex_;
    mutable std::vector<std::string> calls_;
};

} // namespace vesko::testing
