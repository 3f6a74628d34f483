#pragma once
#include "background/NotificationAlertKind.h"
#include "concurrency/Task.h"
#include <cstdint>

namespace vesko {

/// Shows local notifications. Called on the main thread; waits for the platform without blocking. Shows no
/// error: without permission there is no notification.
class NotificationDelivering {
public:
    virtual ~NotificationDelivering() = default;
    /// Asks the person for permission where the platform has such a question; whether it is given.
    virtual Task<bool> requestAuthorization() = 0;
    /// The texts take what the kind needs of the two figures.
    virtual Task<void> deliver(NotificationAlertKind kind, std::int64_t availableBytes,
                               std::int64_t recoverableBytes) = 0;
};

} // namespace vesko
