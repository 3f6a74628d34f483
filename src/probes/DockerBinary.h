#pragma once
#include "core/CommandRunning.h"
#include <optional>
#include <string>

namespace vesko {

/// The docker whose daemon answers: "/usr/local/bin/docker", or else "/opt/homebrew/bin/docker". Asked anew
/// each time, since the daemon may start or end in between. Blocks; any thread.
std::optional<std::string> defaultDockerBinary(const CommandRunning& runner);

} // namespace vesko
