#pragma once
#include <string_view>

namespace vesko {

/// Writes the message to standard error and stops the process: for states that only a mistake in the program
/// can bring about. Any thread.
[[noreturn]] void programmingError(std::string_view message) noexcept;

} // namespace vesko
