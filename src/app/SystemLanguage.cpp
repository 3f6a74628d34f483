#include "app/SystemLanguage.h"
#include <QLocale>
#include <QStringList>
#include <algorithm>

namespace vesko {

Language systemLanguage() {
    const QStringList languages = QLocale::system().uiLanguages();
    const bool portuguese = std::any_of(languages.begin(), languages.end(), [](const QString& identifier) {
        return languageFromIdentifier(identifier.toStdString()) == Language::portuguese;
    });
    return portuguese ? Language::portuguese : Language::english;
}

} // namespace vesko
