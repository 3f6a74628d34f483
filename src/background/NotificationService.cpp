#include "background/NotificationService.h"

#include "base/ByteFormat.h"
#include "base/StringCatalog.h"
#include "base/UUID.h"
#include <utility>

namespace vesko {
namespace {

NotificationRequest requestFor(NotificationAlertKind kind, const std::string& available,
                               const std::string& recoverable) {
    NotificationRequest request;
    request.identifier = std::string(notificationAlertKindWord(kind)) + "-" + newUUID();
    switch (kind) {
    case NotificationAlertKind::lowSpace:
        request.title = localized("alert.lowSpace.title");
        request.body = localized("alert.lowSpace.body %@", available);
        break;
    case NotificationAlertKind::largeNewOpportunity:
        request.title = localized("alert.largeOpportunity.title");
        request.body = localized("alert.largeOpportunity.body %@", recoverable);
        break;
    case NotificationAlertKind::scanCompleted:
        request.title = localized("alert.scanCompleted.title");
        request.body = localized("alert.scanCompleted.body %@", recoverable);
        break;
    }
    return request;
}

} // namespace

NotificationService::NotificationService(std::shared_ptr<NotificationCenter> center)
    : center_(std::move(center)) {}

Task<bool> NotificationService::requestAuthorization() {
    constexpr int options = NotificationCenter::sound | NotificationCenter::alert;
    const NotificationCenter::Answer answer = co_await center_->requestAuthorization(options);
    co_return answer.granted && !answer.failed;
}

Task<bool> NotificationService::ensureAuthorized() {
    const int status = co_await center_->authorizationStatus();
    switch (status) {
    case NotificationCenter::notDetermined: {
        const bool granted = co_await requestAuthorization();
        co_return granted;
    }
    case NotificationCenter::authorized:
    case NotificationCenter::provisional:
    case NotificationCenter::ephemeral: co_return true;
    default: co_return false;
    }
}

Task<void> NotificationService::deliver(NotificationAlertKind kind, std::int64_t availableBytes,
                                        std::int64_t recoverableBytes) {
    const bool allowed = co_await ensureAuthorized();
    if (!allowed) co_return;
    NotificationRequest request =
        requestFor(kind, formatBytes(availableBytes), formatBytes(recoverableBytes));
    // Nobody can do anything about a notification that was not shown.
    [[maybe_unused]] const bool shown = co_await center_->add(std::move(request));
}

} // namespace vesko
