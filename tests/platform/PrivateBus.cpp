#include "platform/PrivateBus.h"
#include <QFile>
#include <atomic>

namespace vesko::testing {
namespace {

constexpr auto configuration =
    R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir=%1</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

} // namespace

PrivateBus::PrivateBus() {
    QFile file(folder_.filePath(QStringLiteral("bus.conf")));
    if (!file.open(QIODevice::WriteOnly)) return;
    file.write(QString::fromLatin1(configuration).arg(folder_.path()).toUtf8());
    file.close();
    daemon_.start(QStringLiteral("dbus-daemon"),
                  {QStringLiteral("--config-file=") + file.fileName(), QStringLiteral("--nofork"),
                   QStringLiteral("--print-address")});
    if (daemon_.waitForStarted(5000) && daemon_.waitForReadyRead(5000))
        address_ = QString::fromLatin1(daemon_.readLine()).trimmed();
}

PrivateBus::~PrivateBus() {
    for (const QString& name : names_) QDBusConnection::disconnectFromBus(name);
    kill();
}

QDBusConnection PrivateBus::connection() {
    static std::atomic<int> count = 0;
    names_ << QStringLiteral("private-%1").arg(++count);
    return QDBusConnection::connectToBus(address_, names_.last());
}

void PrivateBus::kill() {
    if (daemon_.state() == QProcess::NotRunning) return;
    daemon_.kill();
    daemon_.waitForFinished(5000);
}

void PrivateBus::signalDaemon(int number) const {
    if (daemon_.state() == QProcess::Running) ::kill(static_cast<pid_t>(daemon_.processId()), number);
}

} // namespace vesko::testing
