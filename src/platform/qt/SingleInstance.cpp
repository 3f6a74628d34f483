#include "platform/qt/SingleInstance.h"
#include <QDBusMessage>
#include <QDBusReply>

namespace vesko {

SingleInstance::SingleInstance(QObject* parent) : QObject(parent) {}

namespace {

constexpr int longestWait = 1000;    // milliseconds
constexpr uint withoutWaiting = 4;   // DBUS_NAME_FLAG_DO_NOT_QUEUE
constexpr uint someoneElseHasIt = 3; // DBUS_REQUEST_NAME_REPLY_EXISTS

/// False: another connection has the name.
bool takeName(QDBusConnection& bus, const QString& name) {
    QDBusMessage request = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("RequestName"));
    request << name << withoutWaiting;
    const QDBusReply<uint> reply(bus.call(request, QDBus::Block, longestWait));
    return !reply.isValid() || reply.value() != someoneElseHasIt;
}

} // namespace

bool SingleInstance::claim() { return claimOn(QDBusConnection::sessionBus()); }

bool SingleInstance::claimOn(QDBusConnection bus) {
    const QString name = QStringLiteral("org.vesko.Vesko");
    const QString path = QStringLiteral("/org/vesko/Vesko");
    if (!bus.isConnected()) return true;
    // The object stands before the name does, so that whoever finds the name can call it.
    bus.registerObject(path, this, QDBusConnection::ExportAllSlots);
    if (takeName(bus, name)) return true;
    bus.unregisterObject(path);
    bus.call(QDBusMessage::createMethodCall(name, path, name, QStringLiteral("Raise")), QDBus::Block,
             longestWait);
    return false;
}

} // namespace vesko
