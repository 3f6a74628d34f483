#pragma once
#include "background/Updater.h"
#include "base/UserDefaults.h"
#include "concurrency/TaskContext.h"
#include <memory>

namespace vesko {

/// Whoever looks for newer versions on this platform: on macOS the updater framework that lies in the bundle,
/// on Linux the feed whose address was given when the program was built. Without either, one that can't
/// check. Main thread; one object for the life of the program, ended before `tasks`.
std::shared_ptr<Updater> platformUpdater(const TaskContext& tasks, std::shared_ptr<UserDefaults> defaults);

} // namespace vesko
