#pragma once
#include <QJSValue>
#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

class QQmlEngine;
class QJSEngine;

namespace vesko {

/// The string catalog as QML sees it: Strings.of("key") or Strings.of("key", argument, ...). `of` is a
/// property that holds a function, so a binding that calls it is worked out anew when the language changes.
class Strings : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QJSValue of READ of NOTIFY changed)

public:
    explicit Strings(QJSEngine* engine, QObject* parent = nullptr);
    static Strings* create(QQmlEngine* engine, QJSEngine* scriptEngine);

    QJSValue of() const;
    /// A number fills "%lld", everything else "%@".
    Q_INVOKABLE QString text(const QString& key, const QVariant& first = {}, const QVariant& second = {},
                             const QVariant& third = {}) const;
    /// To be called after the language has changed.
    void languageChanged() { Q_EMIT changed(); }

Q_SIGNALS:
    void changed();

private:
    QJSEngine* engine_;
};

} // namespace vesko
