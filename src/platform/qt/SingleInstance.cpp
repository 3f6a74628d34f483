#include "platform/qt/SingleInstance.h"
#ifdef Q_OS_LINUX
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#endif

namespace vesko {

SingleInstance::SingleInstance(QObject* parent) : QObject(parent) {}

#ifdef Q_OS_LINUX

bool SingleInstance::claim() {
    const QString name = QStringLiteral("org.vesko.Vesko");
    const QString path = QStringLiteral("/org/vesko/Vesko");
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return true;
    // The object stands before the name does, so that whoever finds the name can call it.
    bus.registerObject(path, this, QDBusConnection::ExportAllSlots);
    if (bus.registerService(name)) return true;
    bus.unregisterObject(path);
    bus.call(QDBusMessage::createMethodCall(name, path, name, QStringLiteral("Raise")), QDBus::Block, 1000);
    return false;
}

#else

bool SingleInstance::claim() { return true; }

#endif

} // namespace vesko
