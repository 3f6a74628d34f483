#pragma once
#include <string>

namespace vesko {

/// Which family of code produced a group: "cache", "fixed", "project", "discover", "uninstaller",
/// "installer", "simulator", "docker" or "xcode". A tag for the key of an item and for the cache file.
struct CleanupProviderID {
    std::string rawValue;

    friend bool operator==(const CleanupProviderID&, const CleanupProviderID&) = default;
};

} // namespace vesko
