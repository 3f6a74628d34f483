#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace vesko {

/// What a program of the system printed and how it ended.
struct ShellResult {
    int status = -1; ///< exit status, or 128 and the signal
    std::string output;
    std::string errors;
};

/// Runs a program found by PATH to its end; no shell stands between.
ShellResult runProgram(const std::vector<std::string>& words);

/// What `du` prints, in bytes; throws when it prints no number. A complaint of its own is allowed: it counts
/// what it can.
std::int64_t duBytes(const std::string& path, bool followLinks = false);

/// Whether a program is there.
bool hasProgram(const std::string& name);

} // namespace vesko
