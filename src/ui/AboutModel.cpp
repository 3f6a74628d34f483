#include "ui/AboutModel.h"
#include "ui/Acknowledgement.h"
#include <utility>

namespace vesko {

AboutModel::AboutModel(AboutFacts facts, QObject* parent) : QObject(parent), facts_(std::move(facts)) {}

void AboutModel::writeToContact() const {
    if (facts_.contactEmail.isEmpty() || !facts_.openLink) return;
    facts_.openLink(QUrl(QStringLiteral("mailto:") + facts_.contactEmail));
}

QVariantList AboutModel::acknowledgementRows() const {
    const auto row = [](const QString& text, bool isName) {
        return QVariantMap{{QStringLiteral("text"), text}, {QStringLiteral("isName"), isName}};
    };
    QVariantList rows;
    for (const Acknowledgement& component : acknowledgements()) {
        rows.append(row(component.name, true));
        for (const QString& paragraph : component.paragraphs) rows.append(row(paragraph, false));
    }
    return rows;
}

} // namespace vesko
