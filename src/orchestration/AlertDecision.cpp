#include "orchestration/AlertDecision.h"

#include <limits>

namespace vesko {
namespace {

constexpr double cooldownSeconds = 86'400;

/// By how much the recoverable bytes grew; a growth beyond 64 bits is the largest there is, since a figure
/// that a damaged cache brought in is no reason to stop.
std::int64_t growth(const AlertSituation& situation) {
    std::int64_t delta = 0;
    if (!__builtin_sub_overflow(situation.recoverableBytes, situation.previousRecoverableBytes, &delta))
        return delta;
    return situation.recoverableBytes < 0 ? std::numeric_limits<std::int64_t>::min()
                                          : std::numeric_limits<std::int64_t>::max();
}

} // namespace

std::set<NotificationAlertKind> dueAlerts(const AlertSituation& situation,
                                          const NotificationPreferences& preferences,
                                          const NotificationPreferencesStorage::LastFired& lastFired,
                                          Date now) {
    const auto isOffCooldown = [&](NotificationAlertKind kind) {
        const auto entry = lastFired.find(kind);
        return entry == lastFired.end() || secondsBetween(entry->second, now) >= cooldownSeconds;
    };
    const bool grew =
        situation.hasNewGroups || situation.previousRecoverableBytes < situation.recoverableBytes;
    std::set<NotificationAlertKind> due;
    const auto consider = [&](NotificationAlertKind kind, bool isWanted) {
        if (isWanted && isOffCooldown(kind)) due.insert(kind);
    };
    consider(NotificationAlertKind::lowSpace,
             preferences.lowSpaceEnabled && situation.availableBytes < preferences.lowSpaceThresholdBytes);
    consider(NotificationAlertKind::largeNewOpportunity,
             preferences.largeOpportunityEnabled &&
                 growth(situation) > preferences.largeOpportunityDeltaBytes);
    consider(NotificationAlertKind::scanCompleted, preferences.scanCompletedEnabled && grew);
    return due;
}

} // namespace vesko
