#pragma once
#include <cstdint>

namespace vesko {

/// Which notifications the person wants, and from which amounts on.
struct NotificationPreferences {
    bool lowSpaceEnabled = true;
    /// Told of when fewer bytes than this are available.
    std::int64_t lowSpaceThresholdBytes = 10'000'000'000;
    bool largeOpportunityEnabled = true;
    /// Told of when the recoverable bytes grew by more than this during a scan.
    std::int64_t largeOpportunityDeltaBytes = 5'000'000'000;
    bool scanCompletedEnabled = false;

    bool operator==(const NotificationPreferences&) const = default;
};

} // namespace vesko
