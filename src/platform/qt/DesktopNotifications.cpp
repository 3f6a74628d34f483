#include "platform/qt/DesktopNotifications.h"

#include "base/StringCatalog.h"
#include "concurrency/AsyncStream.h"
#include <QDBusPendingCallWatcher>
#include <QDBusReply>
#include <QGuiApplication>
#include <QStringList>
#include <QVariantMap>
#include <utility>

namespace vesko {
namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString path = QStringLiteral("/org/freedesktop/Notifications");
const QString clicked = QStringLiteral("default"); // the action of the notification itself
constexpr int longestWait = 2000;                  // milliseconds
constexpr int asTheServerLikes = -1;               // how long it is shown

} // namespace

DesktopNotifications::DesktopNotifications(QDBusConnection bus, Program program,
                                           std::function<void()> onClick)
    : bus_(std::move(bus)), program_(std::move(program)), onClick_(std::move(onClick)) {}

Task<std::optional<QDBusMessage>> DesktopNotifications::call(QString method, QVariantList arguments) {
    // On a closed connection a call would never be finished, not even with an error.
    if (!bus_.isConnected()) co_return std::nullopt;
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, service, method);
    message.setArguments(arguments);
    AsyncStream<QDBusMessage> answers([&](const auto& producer) {
        auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(message, longestWait), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, producer] {
            producer.yield(watcher->reply());
            watcher->deleteLater();
        });
    });
    std::optional<QDBusMessage> answer = co_await answers.next();
    co_return answer;
}

// Asked each time: another server may have taken the place of the one that answered before.
Task<bool> DesktopNotifications::askCapabilities() {
    std::optional<QDBusMessage> answer = co_await call(QStringLiteral("GetCapabilities"), {});
    if (!answer) co_return false;
    const QDBusReply<QStringList> capabilities(*answer);
    if (!capabilities.isValid()) co_return false;
    understandsMarkup_ = capabilities.value().contains(QStringLiteral("body-markup"));
    understandsActions_ = capabilities.value().contains(QStringLiteral("actions"));
    co_return true;
}

Task<int> DesktopNotifications::authorizationStatus() {
    const bool answers = co_await askCapabilities();
    co_return answers ? authorized : denied;
}

Task<NotificationCenter::Answer> DesktopNotifications::requestAuthorization(int) {
    const bool answers = co_await askCapabilities();
    co_return Answer{.granted = answers};
}

Task<bool> DesktopNotifications::add(NotificationRequest request) {
    listen();
    const QString body = QString::fromStdString(request.body);
    QStringList actions;
    if (understandsActions_) actions << clicked << QString::fromStdString(localized("alert.open"));
    const QVariantList arguments{program_.name,
                                 0U, // takes no other's place
                                 program_.icon,
                                 QString::fromStdString(request.title),
                                 understandsMarkup_ ? body.toHtmlEscaped() : body,
                                 actions,
                                 QVariantMap{{QStringLiteral("desktop-entry"), program_.desktopEntry}},
                                 asTheServerLikes};
    std::optional<QDBusMessage> answer = co_await call(QStringLiteral("Notify"), arguments);
    if (!answer) co_return false;
    const QDBusReply<uint> id(*answer);
    if (!id.isValid() || id.value() == 0) co_return false;
    shown_.insert(id.value());
    co_return true;
}

// Signals are taken from whoever sends them: asking the bus for the server's address would wait for it.
void DesktopNotifications::listen() {
    if (listens_) return;
    listens_ = true;
    bus_.connect(QString(), path, service, QStringLiteral("ActivationToken"), this,
                 SLOT(activationTokenGiven(uint, QString)));
    bus_.connect(QString(), path, service, QStringLiteral("ActionInvoked"), this,
                 SLOT(actionInvoked(uint, QString)));
    bus_.connect(QString(), path, service, QStringLiteral("NotificationClosed"), this,
                 SLOT(closed(uint, uint)));
}

void DesktopNotifications::activationTokenGiven(uint id, const QString& token) {
    // Comes before the click that it belongs to. Wayland's windows take it from the environment when they ask
    // to be activated; elsewhere nobody would take it out again.
    if (shown_.contains(id) && QGuiApplication::platformName().startsWith(QStringLiteral("wayland")))
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
}

void DesktopNotifications::actionInvoked(uint id, const QString& action) {
    if (shown_.contains(id) && action == clicked && onClick_) onClick_();
}

void DesktopNotifications::closed(uint id, uint) { shown_.remove(id); }

std::shared_ptr<NotificationCenter> platformNotificationCenter(std::function<void()> onClick) {
    return std::make_shared<DesktopNotifications>(
        QDBusConnection::sessionBus(),
        DesktopNotifications::Program{.name = QGuiApplication::applicationDisplayName(),
                                      .desktopEntry = QGuiApplication::desktopFileName(),
                                      .icon = QStringLiteral("vesko")},
        std::move(onClick));
}

} // namespace vesko
