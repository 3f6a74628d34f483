#pragma once
#include <QByteArray>
#include <QDBusConnection>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <csignal>

namespace vesko::testing {

/// A message bus of the test's own, on which nothing is started by itself. It can be stopped and killed.
class PrivateBus {
public:
    PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus();

    /// Empty where there is no such program.
    const QString& address() const { return address_; }
    /// A new connection at each call.
    QDBusConnection connection();
    /// It keeps its connections and answers nobody.
    void stop() const { signalDaemon(SIGSTOP); }
    void resume() const { signalDaemon(SIGCONT); }
    void kill();

private:
    void signalDaemon(int number) const;

    QTemporaryDir folder_;
    QProcess daemon_;
    QString address_;
    QStringList names_;
};

} // namespace vesko::testing
