#pragma once
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vesko {

/// A language that the program speaks.
enum class Language { english, portuguese };

/// The language in force for every lookup: set once at the program's start, changed by tests. Safe to read
/// from any thread. Any Portuguese among a system's preferred languages gives Portuguese, everything else
/// English.
Language currentLanguage() noexcept;
void setCurrentLanguage(Language language) noexcept;
/// "en" or "pt-BR": what the state files record as the language of their texts.
std::string_view currentLocaleIdentifier() noexcept;
/// The language meant by an identifier such as "pt_BR.UTF-8", "pt-PT" or "en".
Language languageFromIdentifier(std::string_view identifier) noexcept;

/// What fills a placeholder: "%lld" and "%1$lld" take a number, "%@" and "%1$@" a text.
using TextArgument = std::variant<std::int64_t, std::string>;

/// The text of a key of the table "Localizable" in the current language; the key itself when the table has no
/// such key. Safe from any thread.
std::string localized(std::string_view key);
/// The same with the placeholders filled. The first number decides between the singular and the plural form
/// where the text has both; a substitution with a form of its own is chosen by its own number.
std::string localized(std::string_view key, std::span<const TextArgument> arguments);

namespace detail {
inline TextArgument textArgument(std::string text) { return text; }
inline TextArgument textArgument(std::string_view text) { return std::string(text); }
inline TextArgument textArgument(const char* text) { return std::string(text); }
template <class Number>
    requires std::is_integral_v<Number>
TextArgument textArgument(Number number) {
    return static_cast<std::int64_t>(number);
}
} // namespace detail

template <class... Arguments>
    requires(sizeof...(Arguments) > 0)
std::string localized(std::string_view key, const Arguments&... arguments) {
    const std::vector<TextArgument> list{detail::textArgument(arguments)...};
    return localized(key, std::span<const TextArgument>(list));
}

/// Every key of the table, sorted; for the tests that walk the table.
std::vector<std::string> catalogKeys();
/// The raw text of a key in a language, placeholders unfilled, in its plural ("other") form; empty when
/// absent.
std::string catalogText(std::string_view key, Language language);

} // namespace vesko
