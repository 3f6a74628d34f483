#include "platform/qt/SystemAppearance.h"
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>
#include <utility>

namespace vesko {

namespace {

const QString portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settings = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString colorScheme = QStringLiteral("color-scheme");
const QString contrastLevel = QStringLiteral("contrast");
const QString desktop = QStringLiteral("org.gnome.desktop.interface");
const QString animations = QStringLiteral("enable-animations");

} // namespace

SystemAppearance::SystemAppearance(QDBusConnection bus, QObject* parent)
    : QObject(parent), bus_(std::move(bus)) {
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
    if (!bus_.isConnected()) return;
    // Without it the first connection to a signal with such a value fails: the type is known by name only.
    qRegisterMetaType<QDBusVariant>();
    // Changes are taken from whoever tells them: asking the bus for the portal's address would wait for it.
    bus_.connect(QString(), portalPath, settings, QStringLiteral("SettingChanged"), this,
                 SLOT(portalChanged(QString, QString, QDBusVariant)));
    ask(appearance, colorScheme);
    ask(appearance, contrastLevel);
    ask(desktop, animations);
}

void SystemAppearance::ask(const QString& space, const QString& key) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(portalName, portalPath, settings, QStringLiteral("Read"));
    call << space << key;
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call, 3000), this);
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
    const bool isNumber = plain.typeId() == QMetaType::UInt;
    if (space == appearance && key == colorScheme && isNumber) {
        const uint scheme = plain.toUInt(); // 0 no preference, 1 dark, 2 light
        portalSpoke_ = scheme == 1 || scheme == 2;
        if (portalSpoke_) change(isDark_, scheme == 1);
        if (!portalSpoke_) judgePalette();
    } else if (space == appearance && key == contrastLevel && isNumber) {
        change(highContrast_, plain.toUInt() == 1); // 0 no preference, 1 high
    } else if (space == desktop && key == animations && plain.typeId() == QMetaType::Bool) {
        change(reducedMotion_, !plain.toBool());
    }
}

void SystemAppearance::change(bool& what, bool value) {
    if (what == value) return;
    what = value;
    Q_EMIT changed();
}

} // namespace vesko
