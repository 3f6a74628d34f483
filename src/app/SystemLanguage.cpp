#include "app/SystemLanguage.h"
#include <QLocale>

namespace vesko {

Language systemLanguage() { return firstLanguageOf(QLocale::system().uiLanguages()); }

Language firstLanguageOf(const QStringList& identifiers) {
    for (const QString& identifier : identifiers) {
        const QLocale::Language language = QLocale(identifier).language();
        if (language == QLocale::Portuguese) return Language::portuguese;
        if (language == QLocale::English) return Language::english;
    }
    return Language::english;
}

} // namespace vesko
