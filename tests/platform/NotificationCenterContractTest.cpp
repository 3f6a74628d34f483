#include "platform/NotificationCenterContract.h"

#include "platform/PrivateBus.h"
#include "platform/QtLoop.h"
#include "platform/ScriptedBusObject.h"
#include "platform/qt/DesktopNotifications.h"

namespace vesko::testing {
namespace {

const QString server = QStringLiteral("org.freedesktop.Notifications");
const QString place = QStringLiteral("/org/freedesktop/Notifications");
const QString capabilities = QStringLiteral("GetCapabilities");
const QString notify = QStringLiteral("Notify");

/// A notification server on a bus of its own.
class Desktop {
public:
    Desktop() {
        if (missing()) return;
        connection_.emplace(bus_.connection());
        object_.emplace(*connection_, server, place);
        script_[capabilities] = ScriptedBusObject::with({QStringList{}});
        script_[notify] = ScriptedBusObject::with({7U});
        object_->answers = script_;
    }
    const char* missing() const { return bus_.address().isEmpty() ? "no dbus-daemon" : nullptr; }
    TaskContext context() { return loop_.context(); }
    template <class Condition> bool until(Condition condition) { return loop_.until(std::move(condition)); }
    std::shared_ptr<NotificationCenter> center() {
        return std::make_shared<DesktopNotifications>(
            bus_.connection(), DesktopNotifications::Program{.name = {}, .desktopEntry = {}, .icon = {}},
            [] {});
    }
    void takeAway() { object_.reset(); }
    void refuse() { object_->answers[notify] = ScriptedBusObject::error(); }
    void hold() { object_->answers.clear(); }
    void answer() {
        for (; answered_ < object_->calls.size(); ++answered_) {
            const QDBusMessage& call = object_->calls[answered_];
            connection_->send(script_[call.member()](call));
        }
    }
    int questions() const { return object_ ? static_cast<int>(object_->calls.size()) : 0; }

private:
    QtLoop loop_;
    PrivateBus bus_;
    std::optional<QDBusConnection> connection_;
    std::optional<ScriptedBusObject> object_;
    QMap<QString, ScriptedBusObject::Script> script_;
    qsizetype answered_ = 0;
};
INSTANTIATE_TYPED_TEST_SUITE_P(OfTheDesktop, NotificationCenterContract, Desktop);

} // namespace
} // namespace vesko::testing
