#include "app/PreferredLanguage.h"

#include <cstdlib>
#include <string_view>

namespace vesko {
namespace {

std::string_view variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : std::string_view();
}

std::string_view messagesLocale() {
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (const std::string_view locale = variable(name); !locale.empty()) return locale;
    return {};
}

bool isEnglish(std::string_view identifier) {
    return identifier.substr(0, identifier.find_first_of("-_.@")) == "en";
}

bool isNeutral(std::string_view locale) {
    return locale.empty() || locale == "POSIX" || locale == "C" || locale.starts_with("C.");
}

} // namespace

Language preferredLanguage() {
    const std::string_view locale = messagesLocale();
    if (isNeutral(locale)) return Language::english;
    std::string_view list = variable("LANGUAGE");
    while (!list.empty()) {
        const std::size_t end = list.find(':');
        const std::string_view identifier = list.substr(0, end);
        if (languageFromIdentifier(identifier) == Language::portuguese) return Language::portuguese;
        if (isEnglish(identifier)) return Language::english;
        if (end == std::string_view::npos) break;
        list.remove_prefix(end + 1);
    }
    return languageFromIdentifier(locale);
}

} // namespace vesko
