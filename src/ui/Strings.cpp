#include "ui/Strings.h"
#include "base/StringCatalog.h"
#include <QQmlEngine>

namespace vesko {

namespace {

bool isNumber(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::Double: return true;
    default: return false;
    }
}

} // namespace

Strings::Strings(QJSEngine* engine, QObject* parent) : QObject(parent), engine_(engine) {}

Strings* Strings::create(QQmlEngine*, QJSEngine* scriptEngine) { return new Strings(scriptEngine); }

QJSValue Strings::of() const {
    return engine_->newQObject(const_cast<Strings*>(this)).property(QStringLiteral("text"));
}

QString Strings::text(const QString& key, const QVariant& first, const QVariant& second,
                      const QVariant& third) const {
    std::vector<TextArgument> arguments;
    for (const QVariant* value : {&first, &second, &third}) {
        if (!value->isValid()) break;
        if (isNumber(*value)) {
            arguments.emplace_back(static_cast<std::int64_t>(value->toLongLong()));
        } else {
            arguments.emplace_back(value->toString().toStdString());
        }
    }
    return QString::fromStdString(localized(key.toStdString(), std::span<const TextArgument>(arguments)));
}

} // namespace vesko
