#pragma once
#include <ctime>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vesko::testing {

/// What the machine answers to a question or two: its clock, a thread's quality of service, rights to a file.
struct FakeMachine {
    timespec time{};
    std::optional<clockid_t> askedClock;

    std::vector<std::pair<unsigned, int>> priorities; ///< quality of service and place in it, in order
    bool refusesPriorities = false;

    std::vector<std::string> readable;
    std::optional<std::pair<std::string, int>> askedAccess;
};

FakeMachine& fakeMachine();

} // namespace vesko::testing
