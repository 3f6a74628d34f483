#pragma once
#include <QDBusConnection>
#include <QObject>

namespace vesko {

/// Keeps the program to one window a session. The first start takes a name on the session bus; a later one
/// finds it taken, asks the first to show itself, and ends. Without a session bus every start counts as the
/// first; on macOS the system itself does all this.
class SingleInstance : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.vesko.Vesko")

public:
    explicit SingleInstance(QObject* parent = nullptr);

    /// Takes the name. False: another instance has it and was asked to show itself, whether or not it
    /// answered. Blocks for at most two calls of a second each. A first instance that has crashed has lost
    /// its name with its connection; a bus that does not answer counts as none.
    bool claim();
    /// The same on another bus than the session's.
    bool claimOn(QDBusConnection bus);

public Q_SLOTS:
    /// What a later start calls.
    void Raise() { Q_EMIT raiseRequested(); }

Q_SIGNALS:
    void raiseRequested();
};

} // namespace vesko
