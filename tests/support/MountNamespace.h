#pragma once
#include <functional>
#include <optional>
#include <string>

namespace vesko::testing {

/// Runs `check` in a process with a mount namespace of its own, so that what it mounts is seen by nobody else
/// and goes with it. `check` says what went wrong, nothing when all is well. Gives nothing where namespaces
/// are refused, and otherwise the text.
std::optional<std::string> inMountNamespace(const std::function<std::string()>& check);

/// The same in a process of an ordinary user (number 65534) when this one is the super-user, else as it is.
std::string asOrdinaryUser(const std::function<std::string()>& check);

} // namespace vesko::testing
