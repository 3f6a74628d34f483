#pragma once
#include "background/NotificationDelivering.h"

namespace vesko::testing {

/// Counts how often the permission for notifications was asked for; it is given or not as a test says.
class RecordingPermission final : public NotificationDelivering {
public:
    Task<bool> requestAuthorization() override {
        ++requests;
        co_return isGiven;
    }
    Task<void> deliver(NotificationAlertKind, std::int64_t, std::int64_t) override { co_return; }

    int requests = 0;
    bool isGiven = true;
};

} // namespace vesko::testing
