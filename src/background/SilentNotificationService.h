#pragma once
#include "background/NotificationDelivering.h"

namespace vesko {

/// Stands where there is no place to show notifications: counts as denied and shows nothing.
class SilentNotificationService final : public NotificationDelivering {
public:
    Task<bool> requestAuthorization() override { co_return false; }
    Task<void> deliver(NotificationAlertKind, std::int64_t, std::int64_t) override { co_return; }
};

} // namespace vesko
