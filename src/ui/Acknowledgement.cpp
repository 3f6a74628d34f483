#include "ui/Acknowledgement.h"
#include <QDir>
#include <QFile>

namespace vesko {

Acknowledgement acknowledgementFromText(const QString& text) {
    Acknowledgement component;
    QString paragraph;
    const QStringList lines = text.split(QLatin1Char('\n')) << QString();
    for (const QString& line : lines) {
        const QString words = line.simplified();
        if (component.name.isEmpty()) {
            component.name = words;
        } else if (!words.isEmpty()) {
            paragraph += (paragraph.isEmpty() ? QString() : QStringLiteral(" ")) + words;
        } else if (!paragraph.isEmpty()) {
            component.paragraphs.append(paragraph);
            paragraph.clear();
        }
    }
    return component;
}

std::vector<Acknowledgement> acknowledgements() {
    std::vector<Acknowledgement> all;
    const QDir folder(QStringLiteral(":/acknowledgements"));
    const QStringList names = folder.entryList(QDir::Files, QDir::Name);
    for (const QString& name : names) {
        QFile file(folder.filePath(name));
        if (file.open(QIODevice::ReadOnly))
            all.push_back(acknowledgementFromText(QString::fromUtf8(file.readAll())));
    }
    return all;
}

} // namespace vesko
