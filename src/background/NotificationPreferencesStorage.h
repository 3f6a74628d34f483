#pragma once
#include "background/NotificationAlertKind.h"
#include "background/NotificationPreferences.h"
#include "base/Date.h"
#include "base/UserDefaults.h"
#include <map>
#include <string_view>

namespace vesko {

/// Keeps the notification preferences, and when each notification was raised last, as compact JSON in two
/// data values of the user defaults. Main thread only. What is missing or damaged in any part counts as
/// missing as a whole; nothing is mended.
struct NotificationPreferencesStorage {
    static constexpr std::string_view preferencesKey = "vesko.notificationPreferences";
    static constexpr std::string_view lastFiredKey = "vesko.notificationLastFired";

    using LastFired = std::map<NotificationAlertKind, Date>;

    NotificationPreferencesStorage() = delete;

    /// The defaults of NotificationPreferences where there are no others.
    static NotificationPreferences loadPreferences(const UserDefaults& defaults);
    static void savePreferences(const NotificationPreferences& preferences, UserDefaults& defaults);
    /// Empty where there is none. An entry of a kind that this version does not know is passed over.
    static LastFired loadLastFired(const UserDefaults& defaults);
    static void saveLastFired(const LastFired& lastFired, UserDefaults& defaults);
};

} // namespace vesko
