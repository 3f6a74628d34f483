#pragma once
#include "support/FakeRunner.h"
#include <map>
#include <memory>
#include <string>
#include <utility>

namespace vesko::testing {

/// What each whole command line is answered with; any other is a tool that is not there.
class ToolScript {
public:
    using Command = FakeRunner::Command;

    ToolScript& on(const Command& command, std::string output) {
        answers_[command] = {0, std::move(output)};
        return *this;
    }
    ToolScript& failing(const Command& command, std::int32_t exitCode = 1, std::string output = "") {
        answers_[command] = {exitCode, std::move(output)};
        return *this;
    }
    std::shared_ptr<FakeRunner> runner() const {
        return std::make_shared<FakeRunner>([answers = answers_](const Command& command) {
            const auto found = answers.find(command);
            return found == answers.end() ? CommandResult{-1, ""} : found->second;
        });
    }

private:
    std::map<Command, CommandResult> answers_;
};

} // namespace vesko::testing
