#pragma once
#include "core/SizeCalculating.h"
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace vesko::testing {

/// Answers what a function says for each path, 1000 without one, and remembers what it was asked.
class ScriptedSizes final : public SizeCalculating {
public:
    using Answer = std::function<std::int64_t(const FileURL&)>;
    struct Call {
        std::string path;
        bool preferDiskUsage = false;
        bool linkAware = false;
        friend bool operator==(const Call&, const Call&) = default;
    };

    explicit ScriptedSizes(Answer answer = nullptr) : answer_(std::move(answer)) {}

    std::int64_t size(const FileURL& url, bool preferDiskUsage) const override {
        return answer({url.path(), preferDiskUsage, false}, url);
    }
    std::int64_t linkAwareSize(const FileURL& url) const override {
        return answer({url.path(), false, true}, url);
    }
    std::vector<Call> calls() const {
        const std::lock_guard lock(mutex_);
        return calls_;
    }

private:
    std::int64_t answer(Call call, const FileURL& url) const {
        {
            const std::lock_guard lock(mutex_);
            calls_.push_back(std::move(call));
        }
        return answer_ ? answer_(url) : 1000;
    }

    Answer answer_;
    mutable std::mutex mutex_;
    mutable std::vector<Call> calls_;
};

} // namespace vesko::testing
