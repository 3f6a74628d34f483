#pragma once
#include "background/NotificationCenter.h"
#include "background/NotificationDelivering.h"
#include <memory>

namespace vesko {

/// Shows the notifications in the centre that it is given, in the language in force. Where nobody has been
/// asked yet, the first delivery asks. What fails is passed over.
class NotificationService final : public NotificationDelivering {
public:
    explicit NotificationService(std::shared_ptr<NotificationCenter> center);

    Task<bool> requestAuthorization() override;
    Task<void> deliver(NotificationAlertKind kind, std::int64_t availableBytes,
                       std::int64_t recoverableBytes) override;

private:
    Task<bool> ensureAuthorized();

    std::shared_ptr<NotificationCenter> center_;
};

} // namespace vesko
