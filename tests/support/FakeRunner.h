#pragma once
#include "core/CommandRunning.h"
#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace vesko::testing {

/// Answers commands by a function, (-1, "") without one, and remembers them.
class FakeRunner final : public CommandRunning {
public:
    using Command = std::vector<std::string>; // the executable, then its arguments
    using Answer = std::function<CommandResult(const Command&)>;

    explicit FakeRunner(Answer answer = nullptr) : answer_(std::move(answer)) {}

    CommandResult run(const std::string& executable,
                      const std::vector<std::string>& arguments) const override {
        Command command{executable};
        command.insert(command.end(), arguments.begin(), arguments.end());
        {
            const std::lock_guard lock(mutex_);
            commands_.push_back(command);
        }
        return answer_ ? answer_(command) : CommandResult{-1, ""};
    }
    std::vector<Command> commands() const {
        const std::lock_guard lock(mutex_);
        return commands_;
    }

private:
    Answer answer_;
    mutable std::mutex mutex_;
    mutable std::vector<Command> commands_;
};

} // namespace vesko::testing
