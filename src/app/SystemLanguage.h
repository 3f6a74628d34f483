#pragma once
#include "base/StringCatalog.h"

namespace vesko {

/// The language of the window, by the list of languages that the person has set for the desktop: any
/// Portuguese in it gives Portuguese, everything else English.
Language systemLanguage();

} // namespace vesko
