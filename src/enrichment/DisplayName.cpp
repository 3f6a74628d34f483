#include "enrichment/DisplayName.h"

#include "base/Paths.h"
#include "base/StringCatalog.h"
#include "base/Text.h"

#include <algorithm>
#include <array>
#include <vector>

namespace vesko {
namespace {

constexpr std::string_view projectDash = " — ";

/// Names that say nothing by themselves: every project has one.
constexpr std::array<std::string_view, 7> genericNames{"node_modules", "Pods", "target", "build",
                                                       ".next",        "dist", "out"};

bool isGeneric(std::string_view name) { return std::ranges::find(genericNames, name) != genericNames.end(); }

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t end = text.find(separator);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

bool isHexDigit(char character) noexcept {
    return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'f') ||
           (character >= 'A' && character <= 'F');
}

/// No letter outside of ASCII folds to one of these, so bytes are enough.
bool isDiskImage(std::string_view name) noexcept {
    constexpr std::string_view extension = ".dmg";
    return name.size() >= extension.size() &&
           std::ranges::equal(name.substr(name.size() - extension.size()), extension, {}, [](char letter) {
               return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
           });
}

bool isAscii(char character) noexcept { return static_cast<unsigned char>(character) < 0x80; }

/// 8-4-4-4-12 hexadecimal digits (RFC 9562).
bool isUuid(std::string_view name) {
    if (name.size() != 36) return false;
    for (std::size_t at = 0; at < name.size(); ++at) {
        const bool dash = at == 8 || at == 13 || at == 18 || at == 23;
        if (dash ? name[at] != '-' : !isHexDigit(name[at])) return false;
    }
    return true;
}

/// The first code point of `text` as bytes.
std::string_view firstCodePoint(std::string_view text) {
    std::size_t length = std::min<std::size_t>(text.size(), 1);
    while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) ++length;
    return text.substr(0, length);
}

/// A digit that a combining mark follows is another character, as the "e" of a decomposed "é".
std::size_t hexDigitCount(std::string_view name) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < name.size(); ++at) {
        if (!isHexDigit(name[at])) continue;
        const std::string_view next = firstCodePoint(name.substr(at + 1));
        if (!next.empty() && !isAscii(next[0]) && characterCount(name.substr(at, 1 + next.size())) == 1)
            continue;
        ++count;
    }
    return count;
}

bool isVersion(std::string_view word) {
    std::u32string characters = codePoints(lowercased(word));
    if (characters.starts_with(U'v')) characters.erase(0, 1);
    return !characters.empty() && isNumberCharacter(characters[0]) &&
           std::ranges::all_of(characters, [](char32_t character) {
               return character == U'.' || isNumberCharacter(character);
           });
}

std::string chosenName(const ScannableItem& item, const std::optional<std::string>& enrichedName) {
    if (item.displayLabel && !item.displayLabel->empty()) return *item.displayLabel;
    const std::string_view name = item.url.lastPathComponent();
    const bool enriched = enrichedName && !enrichedName->empty();
    if (!isGeneric(name)) return enriched ? *enrichedName : cleanName(name);
    const FileURL parent = item.url.parent();
    if (enriched && (containsIgnoringCase(*enrichedName, parent.lastPathComponent()) ||
                     enrichedName->contains(projectDash) || enrichedName->contains(" / ")))
        return *enrichedName;
    return friendlyName(name, parent);
}

} // namespace

std::string displayName(const ScannableItem& item, const std::optional<std::string>& enrichedName) {
    return escapedForDisplay(chosenName(item, enrichedName));
}

std::string friendlyName(const FileURL& url) {
    const std::string_view name = url.lastPathComponent();
    // A parent is a URL to be made, which a hundred thousand names can do without.
    if (!isGeneric(name)) return cleanName(name);
    return friendlyName(name, url.parent());
}

std::string friendlyName(std::string_view name, const FileURL& parent) {
    const std::string_view folder = parent.lastPathComponent();
    if (!isGeneric(name) || folder.empty() || folder == name) return cleanName(name);
    std::string result(name);
    result += projectDash;
    if (looksOpaque(folder))
        result += localized("display.unidentifiedProject");
    else
        result += folder;
    return result;
}

std::string cleanName(std::string_view name) {
    const std::string_view trimmed = trimmedBlanks(name);
    if (trimmed.empty()) return std::string(name);
    if (isDiskImage(trimmed)) {
        const std::string_view stem = trimmed.substr(0, trimmed.rfind('.'));
        const std::string cleaned = cleanInstallerName(stem);
        return cleaned.empty() ? std::string(stem) : cleaned;
    }
    if (isBundleIdentifier(trimmed)) return withFirstCharacterUppercased(split(trimmed, '.').back());
    return std::string(trimmed);
}

std::string cleanInstallerName(std::string_view name) {
    std::string blanked(name);
    std::ranges::replace_if(
        blanked, [](char character) { return character == '_' || character == '-'; }, ' ');
    std::string kept;
    for (const std::string_view word : split(blanked, ' ')) {
        if (word.empty()) continue;
        const bool first = kept.empty();
        if (isVersion(word)) return first ? std::string(word) : kept;
        if (!first) kept += ' ';
        kept += word;
    }
    return kept;
}

bool isBundleIdentifier(std::string_view name) {
    if (name.contains(' ')) return false;
    const auto parts = split(name, '.');
    return parts.size() >= 3 && std::ranges::none_of(parts, &std::string_view::empty);
}

bool looksOpaque(std::string_view name) {
    if (isUuid(name)) return true;
    const std::size_t hex = hexDigitCount(name);
    // Fewer can decide nothing below, so that most names are told without counting characters.
    if (hex < 20) return false;
    const std::size_t count = characterCount(name);
    if (count >= 24 && static_cast<double>(hex) / static_cast<double>(count) >= 0.85) return true;
    return name.contains('@');
}

std::optional<std::string> cacheLocationHint(const FileURL& url) {
    struct Place {
        std::string_view fragment;
        std::string_view hint;
        bool namesItem;
    };
    static constexpr std::array<Place, 6> places{{
        {"/Library/pnpm/", "Library/pnpm", false},
        {".pnpm-store", "~/.pnpm-store", false},
        {"/.npm/", "~/.npm", false},
        {"/Library/Caches/", "Library/Caches/", true},
        {"/.cargo/", "~/.cargo/", true},
        {"/.gradle/", "~/.gradle/", true},
    }};
    for (const Place& place : places) {
        if (!url.path().contains(place.fragment)) continue;
        std::string hint(place.hint);
        if (place.namesItem) hint += url.lastPathComponent();
        return hint;
    }
    return std::nullopt;
}

} // namespace vesko
