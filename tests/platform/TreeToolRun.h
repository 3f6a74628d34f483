#pragma once
#include "platform/ShellCommand.h"
#include <ostream>
#include <string>
#include <vector>

namespace vesko {

/// With whose rights a test's process runs.
enum class Rights {
    asStarted,
    ordinaryUser, ///< where the tests run as root, the user 65534 instead
};
inline void PrintTo(Rights rights, std::ostream* stream) {
    *stream << (rights == Rights::asStarted ? "as started" : "as an ordinary user");
}

/// The words that start the helper with those rights; a wrapper such as strace may come before them.
std::vector<std::string> treeToolWords(Rights rights, const std::vector<std::string>& task);
ShellResult runTreeTool(Rights rights, const std::vector<std::string>& task);

/// Runs a shell script as root in a mount namespace of its own, with `arguments` as $1 and so on. The helper
/// with the given rights is the shell function `tree_tool`.
ShellResult runInOwnMounts(Rights rights, const std::string& script,
                           const std::vector<std::string>& arguments);
/// Why the former can't be done here; empty when it can.
std::string whyNoOwnMounts();

/// Whether system calls can be delayed or failed here by strace; the reason when not.
std::string whyNoInjection();

} // namespace vesko
