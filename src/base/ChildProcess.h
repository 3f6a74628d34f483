#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vesko {

/// How a child process ended.
struct ChildResult {
    std::int32_t status = 0;    ///< exit status, or the number of the signal that ended it
    std::string standardOutput; ///< every byte that it wrote, as it stands
};

/// Starts `executable` (an absolute path, no search) with these arguments, reads its standard output to the
/// end, and only then waits for it to exit. Standard error goes into a pipe that nobody reads and that is
/// dropped at the end: a child that fills it blocks, and this call with it. Environment, working folder and
/// standard input are this process's own; no other open file reaches the child. There is no time limit, and
/// the cancellation of a task does not reach the child. Nothing when the child could not be started. Blocks;
/// any thread. The platform layer implements it.
std::optional<ChildResult> runChild(const std::string& executable, const std::vector<std::string>& arguments);

/// How many children runChild has started since the process began. Any thread.
std::int64_t childrenStarted() noexcept;

} // namespace vesko
