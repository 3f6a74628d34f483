#include "background/NotificationPreferencesStorage.h"

#include "support/MemoryUserDefaults.h"
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace vesko {
namespace {

using testing::MemoryUserDefaults;

RC_GTEST_PROP(NotificationPreferencesProperty, PreferencesComeBackWhole,
              (bool lowSpace, std::int64_t threshold, bool large, std::int64_t delta, bool completed)) {
    const NotificationPreferences preferences{lowSpace, threshold, large, delta, completed};
    MemoryUserDefaults defaults;
    NotificationPreferencesStorage::savePreferences(preferences, defaults);
    RC_ASSERT(NotificationPreferencesStorage::loadPreferences(defaults) == preferences);
}

RC_GTEST_PROP(NotificationPreferencesProperty, DatesComeBackToTheMicrosecond,
              (std::uint32_t first, std::uint32_t second, bool isThird, std::uint32_t microseconds)) {
    const auto at = [&](std::uint32_t seconds) {
        return dateFromUnixSeconds(seconds) + std::chrono::microseconds(microseconds % 1'000'000);
    };
    NotificationPreferencesStorage::LastFired lastFired{{NotificationAlertKind::lowSpace, at(first)}};
    if (isThird) lastFired[NotificationAlertKind::scanCompleted] = at(second);
    MemoryUserDefaults defaults;
    NotificationPreferencesStorage::saveLastFired(lastFired, defaults);
    RC_ASSERT(NotificationPreferencesStorage::loadLastFired(defaults) == lastFired);
}

RC_GTEST_PROP(NotificationPreferencesProperty, NoBytesDoHarm, (const std::string& bytes)) {
    MemoryUserDefaults defaults;
    defaults.setData(NotificationPreferencesStorage::preferencesKey, bytes);
    defaults.setData(NotificationPreferencesStorage::lastFiredKey, bytes);
    RC_ASSERT(NotificationPreferencesStorage::loadPreferences(defaults) == NotificationPreferences());
    RC_ASSERT(NotificationPreferencesStorage::loadLastFired(defaults).empty());
}

} // namespace
} // namespace vesko
