#pragma once
#include <string>

namespace vesko {

/// What the whole Cleanup screen is doing.
struct CleanupPhase {
    enum class Kind {
        idle,     ///< nothing is running
        scanning, ///< a scan task is in flight
        cleaning, ///< a deletion is in flight
        error,    ///< the last deletion had failures
    };
    Kind kind = Kind::idle;
    std::string message; ///< of an error: the failures' texts, one to a line; otherwise empty

    static CleanupPhase idle() { return {}; }
    static CleanupPhase scanning() { return {Kind::scanning, {}}; }
    static CleanupPhase cleaning() { return {Kind::cleaning, {}}; }
    static CleanupPhase error(std::string texts) { return {Kind::error, std::move(texts)}; }

    bool isBusy() const noexcept { return kind == Kind::scanning || kind == Kind::cleaning; }

    friend bool operator==(const CleanupPhase&, const CleanupPhase&) = default;
};

} // namespace vesko
