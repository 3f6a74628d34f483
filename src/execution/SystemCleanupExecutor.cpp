#include "execution/SystemCleanupExecutor.h"

#include "concurrency/CurrentTask.h"
#include "execution/DockerDeletionTarget.h"
#include "probes/DockerBinary.h"
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

Outcome deleteDockerObject(const DockerDeletionTarget& target, const CommandRunning& runner) {
    const std::optional<std::string> docker = defaultDockerBinary(runner);
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
