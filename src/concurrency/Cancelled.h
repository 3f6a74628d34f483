#pragma once

#include <exception>

namespace vesko {

// Thrown by waiting operations (sleepFor) whose task was cancelled. An ordinary way to end a task.
struct Cancelled : std::exception {
    const char* what() const noexcept override { return "cancelled"; }
};

} // namespace vesko
