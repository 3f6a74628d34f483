#include "probes/DockerBinary.h"

namespace vesko {

std::optional<std::string> defaultDockerBinary(const CommandRunning& runner) {
    // "info" has to reach the daemon: a tool without one is of no use.
    for (const char* candidate : {"/usr/local/bin/docker", "/opt/homebrew/bin/docker"})
        if (runner.run(candidate, {"info"}).exitCode == 0) return candidate;
    return std::nullopt;
}

} // namespace vesko
