#pragma once
#include "background/NotificationPreferencesStorage.h"
#include <cstdint>
#include <set>

namespace vesko {

/// What a finished scan knows that notifications go by.
struct AlertSituation {
    std::int64_t availableBytes = 0;           ///< free on the volume
    std::int64_t recoverableBytes = 0;         ///< found by the scan
    std::int64_t previousRecoverableBytes = 0; ///< of the list when the scan began
    bool hasNewGroups = false;                 ///< a group is there that was not when the scan began
};

/// The notifications to raise, in the order of the kinds. A kind that was raised within the last 24 hours is
/// not due, nor is one that is said to have been raised later than `now`. An amount at its threshold is not
/// beyond it.
std::set<NotificationAlertKind> dueAlerts(const AlertSituation& situation,
                                          const NotificationPreferences& preferences,
                                          const NotificationPreferencesStorage::LastFired& lastFired,
                                          Date now);

} // namespace vesko
