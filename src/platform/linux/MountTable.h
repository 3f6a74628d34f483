#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace vesko {

/// Where a file system is attached, and what it comes from.
struct Mount {
    std::string point;  ///< absolute path
    std::string source; ///< a device's path, or the file system's own word

    friend bool operator==(const Mount&, const Mount&) = default;
};

/// The mount that `path` (absolute, links resolved) lies on: the deepest one, and of several at one point the
/// last, which hides the others. `table` is in the form of /proc/self/mountinfo (proc(5)); lines in another
/// form are passed over.
std::optional<Mount> mountOf(std::string_view path, std::string_view table);

} // namespace vesko
