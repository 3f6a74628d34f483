#pragma once
#include "background/NotificationCenter.h"
#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QSet>
#include <QString>
#include <QVariant>
#include <functional>
#include <optional>

namespace vesko {

/// The desktop's notification server, asked over the session bus (freedesktop.org's protocol of desktop
/// notifications, version 1.2). There is no question to the person: where a server answers within two
/// seconds notifications are authorized, and denied where there is none, no bus, or no answer that can be
/// understood. Nothing is called but asynchronously. Main thread.
class DesktopNotifications final : public QObject, public NotificationCenter {
    Q_OBJECT

public:
    /// How the program presents itself to the server.
    struct Program {
        QString name;
        QString desktopEntry; ///< the name of its desktop file, without the extension
        QString icon;         ///< a name of the icon theme
    };

    /// `onClick` is called when the person clicks on a notification that came from here.
    DesktopNotifications(QDBusConnection bus, Program program, std::function<void()> onClick);

    Task<int> authorizationStatus() override;
    Task<Answer> requestAuthorization(int options) override;
    Task<bool> add(NotificationRequest request) override;

private Q_SLOTS:
    void activationTokenGiven(uint id, const QString& token);
    void actionInvoked(uint id, const QString& action);
    void closed(uint id, uint reason);

private:
    Task<bool> askCapabilities();
    Task<std::optional<QDBusMessage>> call(QString method, QVariantList arguments);
    void listen();

    QDBusConnection bus_;
    Program program_;
    std::function<void()> onClick_;
    bool understandsMarkup_ = false;
    bool understandsActions_ = false;
    bool listens_ = false;
    QSet<uint> shown_; ///< what the server calls our notifications that are still there
};

} // namespace vesko
