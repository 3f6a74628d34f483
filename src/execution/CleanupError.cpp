#include "execution/CleanupError.h"

#include "base/Paths.h"
#include "base/StringCatalog.h"

namespace vesko {

namespace {

std::string joined(const std::vector<std::string>& words) {
    std::string line;
    for (const std::string& word : words) {
        if (!line.empty()) line += ' ';
        line += word;
    }
    return line;
}

} // namespace

std::string DockerDeletionError::localizedDescription() const {
    if (const auto* failed = std::get_if<DeleteFailed>(&value_))
        return localized("error.docker.deleteFailed %1$@ %2$lld", escapedForDisplay(joined(failed->command)),
                         failed->exitCode);
    if (std::holds_alternative<DockerNotAvailable>(value_)) return localized("error.docker.notAvailable");
    return localized("error.docker.unsupported");
}

std::string SimulatorDeletionError::localizedDescription() const {
    return localized("error.simulator.deleteFailed %lld", exitCode);
}

std::string CleanupError::localizedDescription() const {
    return std::visit([](const auto& error) { return error.localizedDescription(); }, value_);
}

} // namespace vesko
