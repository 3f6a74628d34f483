#pragma once
#include <string>
#include <vector>

namespace vesko {

/// A tool that a system may lack at its fixed path, and what takes its place there.
struct ToolStandIn {
    std::string path;
    std::vector<std::string> executables; ///< in the order of preference

    friend bool operator==(const ToolStandIn&, const ToolStandIn&) = default;
};

/// The rows of this system, read anew at each call. The platform layer implements it; a system that has every
/// tool at its own place has no rows.
std::vector<ToolStandIn> toolStandIns();

/// The executable behind a fixed path: the path itself wherever something stands there, else the first of its
/// row's executables that exists, else the path, so that starting it fails as it would have. The disk is
/// asked at each call, since tools come and go while the program runs.
std::string executableBehind(const std::string& path, const std::vector<ToolStandIn>& table = toolStandIns());

/// Whether the system lacks the tool and the table has a row for it.
bool isStoodInFor(const std::string& path, const std::vector<ToolStandIn>& table = toolStandIns());

} // namespace vesko
