#pragma once
#include "base/StringCatalog.h"
#include <QStringList>

namespace vesko {

/// The language of the window, by the list of languages that the person has set for the desktop.
Language systemLanguage();

/// The first of these ("en-GB", "pt_PT") that the window has, any Portuguese and any English; without one
/// English.
Language firstLanguageOf(const QStringList& identifiers);

} // namespace vesko
