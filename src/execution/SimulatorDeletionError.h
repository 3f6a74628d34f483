#pragma once
#include <cstdint>
#include <string>

namespace vesko {

/// The device tool ran and did not exit with 0. Compared by value.
struct SimulatorDeletionError {
    std::string udid;
    std::int32_t exitCode = 0;

    static SimulatorDeletionError deleteFailed(std::string udid, std::int32_t exitCode) {
        return {std::move(udid), exitCode};
    }

    /// One plain sentence in the current language.
    std::string localizedDescription() const;

    friend bool operator==(const SimulatorDeletionError&, const SimulatorDeletionError&) = default;
};

} // namespace vesko
