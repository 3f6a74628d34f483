#pragma once
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QList>
#include <QMap>
#include <QString>
#include <functional>
#include <optional>
#include <utility>

namespace vesko::testing {

/// An object on a bus under a name: writes down the calls that it gets and answers each method as the test
/// says. A method without an answer is never answered.
class ScriptedBusObject : public QDBusVirtualObject {
public:
    using Script = std::function<QDBusMessage(const QDBusMessage& call)>;

    ScriptedBusObject(QDBusConnection bus, QString name, QString path)
        : bus_(std::move(bus)), name_(std::move(name)), path_(std::move(path)) {
        bus_.registerVirtualObject(path_, this);
        bus_.registerService(name_);
    }
    ~ScriptedBusObject() override {
        bus_.unregisterService(name_);
        bus_.unregisterObject(path_);
    }

    QMap<QString, Script> answers;
    QList<QDBusMessage> calls;

    /// Answers with these values.
    static Script with(const QVariantList& values) {
        return [values](const QDBusMessage& call) { return call.createReply(values); };
    }
    static Script error() {
        return [](const QDBusMessage& call) {
            return call.createErrorReply(QStringLiteral("org.vesko.Test"), QStringLiteral("no"));
        };
    }
    void emitSignal(const QString& interface, const QString& member, const QVariantList& values) {
        QDBusMessage message = QDBusMessage::createSignal(path_, interface, member);
        message.setArguments(values);
        bus_.send(message);
    }
    int count(const QString& method) const {
        int found = 0;
        for (const QDBusMessage& call : calls) found += call.member() == method ? 1 : 0;
        return found;
    }
    /// The last call of this method.
    std::optional<QVariantList> last(const QString& method) const {
        std::optional<QVariantList> found;
        for (const QDBusMessage& call : calls)
            if (call.member() == method) found = call.arguments();
        return found;
    }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        calls << message;
        const auto script = answers.find(message.member());
        if (script != answers.end()) connection.send((*script)(message));
        return true;
    }

private:
    QDBusConnection bus_;
    QString name_;
    QString path_;
};

} // namespace vesko::testing
