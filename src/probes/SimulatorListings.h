#pragma once
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

/// Readings of what `xcrun simctl list ... -j` prints. Strict: a key that has to be there and is missing, or
/// is of another type, makes the whole listing unreadable. Keys that are not told here don't count.
namespace vesko {

/// A simulated device.
struct SimctlDevice {
    std::string udid;
    std::string name;
    bool isAvailable = false;            ///< whether its runtime is installed
    std::optional<std::string> dataPath; ///< the folder "data" inside of the device's own

    friend bool operator==(const SimctlDevice&, const SimctlDevice&) = default;
};

/// The devices of `simctl list devices -j`, runtime by runtime; nothing for an unreadable listing.
std::optional<std::vector<SimctlDevice>> parseSimctlDevices(std::string_view output);

/// The bundle paths of `simctl list runtimes -j`, of the runtimes that have one; nothing for an unreadable
/// listing.
std::optional<std::unordered_set<std::string>> parseSimctlRuntimes(std::string_view output);

} // namespace vesko
