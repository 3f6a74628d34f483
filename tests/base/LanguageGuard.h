#pragma once
#include "base/StringCatalog.h"

namespace vesko {

/// Speaks `language` for one test and what was spoken before afterwards.
class LanguageGuard {
public:
    explicit LanguageGuard(Language language) : before_(currentLanguage()) { setCurrentLanguage(language); }
    ~LanguageGuard() { setCurrentLanguage(before_); }
    LanguageGuard(const LanguageGuard&) = delete;
    LanguageGuard& operator=(const LanguageGuard&) = delete;

private:
    Language before_;
};

} // namespace vesko
