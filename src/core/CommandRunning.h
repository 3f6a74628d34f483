#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace vesko {

/// What a child process left: its exit status (-1 when it could not be started) and its standard output,
/// empty when that was no UTF-8.
struct CommandResult {
    std::int32_t exitCode = -1;
    std::string output;

    friend bool operator==(const CommandResult&, const CommandResult&) = default;
};

/// Runs external tools. Blocks until the child has ended; may be called from any thread; every failure is
/// told in the exit status.
class CommandRunning {
public:
    virtual ~CommandRunning() = default;
    /// `executable` is an absolute path; no PATH search, no shell, no quoting: the arguments reach the child
    /// as they are.
    virtual CommandResult run(const std::string& executable,
                              const std::vector<std::string>& arguments) const = 0;
};

} // namespace vesko
