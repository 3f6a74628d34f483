#pragma once
#include "base/StringCatalog.h"

namespace vesko {

/// The language that the environment asks a program without a window for: the locale of LC_ALL, LC_MESSAGES
/// or LANG, the first that is set, and before it the first language of ours in the list of LANGUAGE, which
/// counts only beside a locale other than "C" and "POSIX".
Language preferredLanguage();

} // namespace vesko
