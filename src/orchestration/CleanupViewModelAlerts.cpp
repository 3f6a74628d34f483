#include "orchestration/CleanupViewModel.h"

#include "base/Environment.h"
#include "concurrency/Concurrency.h"
#include <algorithm>

// What a finished scan tells the person outside of the window.
namespace vesko {

AlertSituation CleanupViewModel::alertSituation() const {
    AlertSituation situation;
    situation.recoverableBytes = *foundTotalBytes;
    situation.previousRecoverableBytes = notificationPreviousRecoverableBytes_;
    situation.hasNewGroups = std::ranges::any_of(*groups, [this](const CleanupGroup& group) {
        return !notificationPreviousGroupIDs_.contains(group.id);
    });
    return situation;
}

Task<void> CleanupViewModel::evaluateAlerts() {
    if (isDevelopmentHost()) co_return;
    const TaskContext task = co_await currentContext();
    AlertSituation situation = alertSituation();
    const NotificationPreferences preferences =
        NotificationPreferencesStorage::loadPreferences(*parts_.defaults);
    auto reading = offload([volume = parts_.alertVolume] { return volume->readVolume(); });
    const DiskVolumeInfo volume = co_await reading;
    if (task.stop.stopRequested()) co_return;
    situation.availableBytes = volume.availableBytes;

    NotificationPreferencesStorage::LastFired lastFired =
        NotificationPreferencesStorage::loadLastFired(*parts_.defaults);
    const Date now = parts_.dates->now();
    const std::set<NotificationAlertKind> due = dueAlerts(situation, preferences, lastFired, now);
    if (due.empty()) co_return;
    for (const NotificationAlertKind kind : due) {
        co_await parts_.notificationService->deliver(kind, situation.availableBytes, *foundTotalBytes);
        lastFired.insert_or_assign(kind, now);
    }
    NotificationPreferencesStorage::saveLastFired(lastFired, *parts_.defaults);
}

} // namespace vesko
