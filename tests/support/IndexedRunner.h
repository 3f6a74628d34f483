#pragma once
#include "search/SearchCommand.h"
#include "support/FakeRunner.h"
#include <memory>

namespace vesko::testing {

/// What a search index of the disk as it is now answers to `mdfind`. What is not there is no failure to it:
/// an index knows nothing of it.
inline CommandResult answerOfIndex(const FakeRunner::Command& command) {
    const SearchReply reply = replyToSearch(TreeSearch(), {command.begin() + 1, command.end()});
    return {reply.status == SearchReply::unsearchable ? 0 : reply.status, reply.output};
}

/// Has that index, and no other tool.
inline std::shared_ptr<FakeRunner> indexedRunner() {
    return std::make_shared<FakeRunner>([](const FakeRunner::Command& command) {
        return command.front() == "/usr/bin/mdfind" ? answerOfIndex(command) : CommandResult{-1, ""};
    });
}

} // namespace vesko::testing
