#pragma once
#include "base/StringCatalog.h"

namespace vesko::testing {

/// Speaks a language until the end of the scope.
class LanguageScope {
public:
    explicit LanguageScope(Language language) : before_(currentLanguage()) { setCurrentLanguage(language); }
    LanguageScope(const LanguageScope&) = delete;
    LanguageScope& operator=(const LanguageScope&) = delete;
    ~LanguageScope() { setCurrentLanguage(before_); }

private:
    Language before_;
};

} // namespace vesko::testing
