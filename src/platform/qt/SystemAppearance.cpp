#include "platform/qt/SystemAppearance.h"
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

namespace vesko {

namespace {

const QString portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settings = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString colorScheme = QStringLiteral("color-scheme");
const QString desktop = QStringLiteral("org.gnome.desktop.interface");
const QString animations = QStringLiteral("enable-animations");

} // namespace

SystemAppearance::SystemAppearance(QObject* parent) : QObject(parent) {
    isDark_ = QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
    qGuiApp->installEventFilter(this);
}

bool SystemAppearance::eventFilter(QObject* object, QEvent* event) {
    if (object == qGuiApp && event->type() == QEvent::ApplicationPaletteChange) judgePalette();
    return false;
}

void SystemAppearance::judgePalette() {
    const bool dark = QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
    if (portalSpoke_ || dark == isDark_) return;
    isDark_ = dark;
    Q_EMIT changed();
}

void SystemAppearance::askPortal() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    bus.connect(portalName, portalPath, settings, QStringLiteral("SettingChanged"), this,
                SLOT(portalChanged(QString, QString, QDBusVariant)));
    ask(appearance, colorScheme);
    ask(desktop, animations);
}

void SystemAppearance::ask(const QString& space, const QString& key) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(portalName, portalPath, settings, QStringLiteral("Read"));
    call << space << key;
    auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call, 3000), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, space, key] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        watcher->deleteLater();
        if (!reply.isError()) take(space, key, reply.value().variant());
    });
}

void SystemAppearance::portalChanged(const QString& space, const QString& key, const QDBusVariant& value) {
    take(space, key, value.variant());
}

void SystemAppearance::take(const QString& space, const QString& key, const QVariant& value) {
    // The portal's first version wraps its answer twice.
    const QVariant plain = value.canConvert<QDBusVariant>() ? value.value<QDBusVariant>().variant() : value;
    if (space == appearance && key == colorScheme) {
        const uint scheme = plain.toUInt(); // 0 no preference, 1 dark, 2 light
        portalSpoke_ = scheme == 1 || scheme == 2;
        if (portalSpoke_ && (scheme == 1) != isDark_) {
            isDark_ = scheme == 1;
            Q_EMIT changed();
        }
        if (!portalSpoke_) judgePalette();
    } else if (space == desktop && key == animations && plain.toBool() == reducedMotion_) {
        reducedMotion_ = !plain.toBool();
        Q_EMIT changed();
    }
}

} // namespace vesko
