#include "base/StringCatalog.h"

#include "CatalogTable.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <optional>

namespace vesko {

namespace {

std::atomic<Language> languageInForce = Language::english;

const catalog::Entry* entryFor(std::string_view key) noexcept {
    const auto found = std::ranges::lower_bound(catalog::entries, key, {}, &catalog::Entry::key);
    return found != catalog::entries.end() && found->key == key ? &*found : nullptr;
}

const catalog::Localization& localizationOf(const catalog::Entry& entry, Language language) noexcept {
    return language == Language::portuguese ? entry.portuguese : entry.english;
}

/// English has the singular for 1 alone, Portuguese for 0 and 1; the sign plays no part in either.
bool isSingular(std::int64_t number, Language language) noexcept {
    if (number == 1 || number == -1) return true;
    return number == 0 && language == Language::portuguese;
}

std::string_view chosen(const catalog::Form& form, std::optional<std::int64_t> number, Language language) {
    if (form.one.empty() || !number || !isSingular(*number, language)) return form.other;
    return form.one;
}

std::string grouped(std::int64_t number, Language language) {
    std::string digits = std::to_string(number);
    const std::size_t first = number < 0 ? 1 : 0;
    const char separator = language == Language::portuguese ? '.' : ',';
    for (std::size_t at = digits.size(); at > first + 3;) digits.insert(at -= 3, 1, separator);
    return digits;
}

std::optional<std::int64_t> numberAt(std::span<const TextArgument> arguments, std::size_t index) {
    if (index >= arguments.size()) return std::nullopt;
    const auto* number = std::get_if<std::int64_t>(&arguments[index]);
    return number ? std::optional(*number) : std::nullopt;
}

std::optional<std::int64_t> firstNumber(std::span<const TextArgument> arguments) {
    for (const TextArgument& argument : arguments)
        if (const auto* number = std::get_if<std::int64_t>(&argument)) return *number;
    return std::nullopt;
}

/// Fills one text. A placeholder without an argument stays as it is written, so that the mistake is seen.
class Filler {
public:
    Filler(const catalog::Localization& localization, Language language,
           std::span<const TextArgument> arguments)
        : localization_(localization), language_(language), arguments_(arguments) {}

    std::string fill() {
        append(chosen(localization_.form, firstNumber(arguments_), language_));
        return std::move(filled_);
    }

private:
    void append(std::string_view text) {
        while (!text.empty()) {
            const std::size_t percent = text.find('%');
            filled_ += text.substr(0, percent);
            if (percent == std::string_view::npos) return;
            text.remove_prefix(percent);
            text.remove_prefix(appendPlaceholder(text));
        }
    }

    /// Appends what the placeholder at the beginning of `text` stands for; the number of bytes it took.
    std::size_t appendPlaceholder(std::string_view text) {
        if (text.starts_with("%%")) {
            filled_ += '%';
            return 2;
        }
        if (text.starts_with("%#@")) return appendSubstitution(text);
        if (text.starts_with("%arg")) {
            appendArgument(substituted_, text.substr(0, 4));
            return 4;
        }
        std::size_t at = 1;
        std::size_t position = 0;
        const auto [end, error] = std::from_chars(text.data() + 1, text.data() + text.size(), position);
        const auto digits = static_cast<std::size_t>(end - text.data());
        const bool positional = error == std::errc() && position > 0 && text.substr(digits).starts_with('$');
        if (positional) at = digits + 1;
        const std::string_view kind = text.substr(at);
        const std::size_t length = kind.starts_with('@') ? 1 : kind.starts_with("lld") ? 3 : 0;
        if (length == 0) {
            filled_ += '%';
            return 1;
        }
        appendArgument(positional ? position - 1 : next_++, text.substr(0, at + length));
        return at + length;
    }

    std::size_t appendSubstitution(std::string_view text) {
        const std::size_t end = text.find('@', 3);
        const std::string_view name = text.substr(3, end == std::string_view::npos ? end : end - 3);
        const auto found = std::ranges::find(localization_.substitutions, name, &catalog::Substitution::name);
        if (end == std::string_view::npos || found == localization_.substitutions.end()) {
            filled_ += '%';
            return 1;
        }
        substituted_ = static_cast<std::size_t>(found->argument - 1);
        append(chosen(found->form, numberAt(arguments_, substituted_), language_));
        return end + 1;
    }

    void appendArgument(std::size_t index, std::string_view placeholder) {
        if (index >= arguments_.size())
            filled_ += placeholder;
        else if (const auto* text = std::get_if<std::string>(&arguments_[index]))
            filled_ += *text;
        else
            filled_ += grouped(std::get<std::int64_t>(arguments_[index]), language_);
    }

    const catalog::Localization& localization_;
    Language language_;
    std::span<const TextArgument> arguments_;
    std::string filled_;
    std::size_t next_ = 0;
    std::size_t substituted_ = 0;
};

std::string replaced(std::string text, std::string_view from, std::string_view to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

} // namespace

Language currentLanguage() noexcept { return languageInForce.load(std::memory_order_relaxed); }

void setCurrentLanguage(Language language) noexcept {
    languageInForce.store(language, std::memory_order_relaxed);
}

std::string_view currentLocaleIdentifier() noexcept {
    return currentLanguage() == Language::portuguese ? "pt-BR" : "en";
}

Language languageFromIdentifier(std::string_view identifier) noexcept {
    const std::string_view subtag = identifier.substr(0, identifier.find_first_of("-_.@"));
    const bool portuguese = subtag.size() == 2 && (subtag[0] == 'p' || subtag[0] == 'P') &&
                            (subtag[1] == 't' || subtag[1] == 'T');
    return portuguese ? Language::portuguese : Language::english;
}

std::string localized(std::string_view key) { return localized(key, std::span<const TextArgument>()); }

std::string localized(std::string_view key, std::span<const TextArgument> arguments) {
    const catalog::Entry* entry = entryFor(key);
    if (!entry) return std::string(key);
    const Language language = currentLanguage();
    return Filler(localizationOf(*entry, language), language, arguments).fill();
}

std::vector<std::string> catalogKeys() {
    std::vector<std::string> keys;
    keys.reserve(catalog::entries.size());
    for (const catalog::Entry& entry : catalog::entries) keys.emplace_back(entry.key);
    return keys;
}

std::string catalogText(std::string_view key, Language language) {
    const catalog::Entry* entry = entryFor(key);
    if (!entry) return {};
    const catalog::Localization& localization = localizationOf(*entry, language);
    std::string text(localization.form.other);
    for (const catalog::Substitution& substitution : localization.substitutions) {
        const std::string argument = "%" + std::to_string(substitution.argument) + "$lld";
        text = replaced(std::move(text), "%#@" + std::string(substitution.name) + "@",
                        replaced(std::string(substitution.form.other), "%arg", argument));
    }
    return text;
}

} // namespace vesko
