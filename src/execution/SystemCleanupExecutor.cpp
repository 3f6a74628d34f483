#include "execution/SystemCleanupExecutor.h"

#include "concurrency/CurrentTask.h"
#include "execution/DockerDeletionTarget.h"
#include <optional>
#include <string_view>

namespace vesko {

namespace {

using Outcome = std::expected<void, CleanupError>;

/// The device that the key names; nothing for a key of another form.
std::optional<std::string> simulatedDevice(const EnrichmentKey& key) {
    constexpr std::string_view prefix = "simulator:";
    if (!key.rawValue.starts_with(prefix) || key.rawValue.size() == prefix.size()) return std::nullopt;
    return key.rawValue.substr(prefix.size());
}

Outcome deleteDevice(const std::string& udid, const CommandRunning& runner) {
    const CommandResult result = runner.run("/usr/bin/xcrun", {"simctl", "delete", udid});
    if (result.exitCode == 0) return {};
    return std::unexpected(SimulatorDeletionError::deleteFailed(udid, result.exitCode));
}

/// Looked up for each item anew, since the service may start or end between two of them.
std::optional<std::string> workingDocker(const CommandRunning& runner) {
    for (const char* candidate : {"/usr/local/bin/docker", "/opt/homebrew/bin/docker"})
        if (runner.run(candidate, {"info"}).exitCode == 0) return candidate;
    return std::nullopt;
}

Outcome deleteDockerObject(const DockerDeletionTarget& target, const CommandRunning& runner) {
    const std::optional<std::string> docker = workingDocker(runner);
    if (!docker) return std::unexpected(DockerDeletionError::dockerNotAvailable());
    const std::vector<std::string> arguments = target.arguments();
    const CommandResult result = runner.run(*docker, arguments);
    if (result.exitCode == 0) return {};
    std::vector<std::string> command{*docker};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return std::unexpected(DockerDeletionError::deleteFailed(std::move(command), result.exitCode));
}

} // namespace

Outcome SystemCleanupExecutor::deleteItem(const ScannableItem& item, const CommandRunning& runner,
                                          const RemovalProgress& progress) const {
    if (const auto udid = simulatedDevice(item.enrichmentKey)) return deleteDevice(*udid, runner);
    if (item.enrichmentKey == EnrichmentKey::unsupportedDockerObject())
        return std::unexpected(DockerDeletionError::unsupportedOfflineTarget());
    if (const auto target = DockerDeletionTarget::fromKey(item.enrichmentKey))
        return deleteDockerObject(*target, runner);
    if (auto failure = removeForGood(item.url, progress, currentStopToken()))
        return std::unexpected(*failure);
    return {};
}

} // namespace vesko
