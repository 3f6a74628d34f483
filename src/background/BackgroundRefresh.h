#pragma once
#include "base/UserDefaults.h"
#include <string_view>

namespace vesko {

/// Has no control in the window; whoever does not want it writes false under this key.
inline constexpr std::string_view backgroundRefreshKey = "vesko.backgroundRefreshEnabled";

/// Whether this program may work on its own while nobody uses it: scan every few hours, follow changes on
/// disk. It may unless the person said no; anything but a boolean says nothing. Main thread.
inline bool isBackgroundRefreshEnabled(const UserDefaults& defaults) {
    return defaults.boolean(backgroundRefreshKey).value_or(true);
}

} // namespace vesko
