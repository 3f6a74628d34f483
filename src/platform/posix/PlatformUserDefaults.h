#pragma once
#include "base/UserDefaults.h"
#include "concurrency/TaskContext.h"
#include <memory>

namespace vesko {

/// The preferences of this user, by the platform's own means: on macOS those of the program's identifier, on
/// Linux "defaults.json" in the configuration folder. One object for the life of the program, made on the
/// main thread; `tasks` is where delayed writes wait and work, and ending them writes what is left.
std::shared_ptr<UserDefaults> platformUserDefaults(const TaskContext& tasks);

} // namespace vesko
