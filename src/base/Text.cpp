#include "base/Text.h"

#include "base/Paths.h"
#include "base/StringCatalog.h"

#include <algorithm>
#include <array>
#include <memory>
#include <unicode/ubrk.h>
#include <unicode/ucasemap.h>
#include <unicode/uchar.h>
#include <unicode/ucol.h>
#include <unicode/usearch.h>
#include <unicode/ustring.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

// The library's C interface is used throughout: its C++ one hands over standard strings, whose layout differs
// between the two standard libraries that the program is built with.

namespace vesko {

namespace {

bool isPrintableAscii(char character) noexcept { return character >= 0x20 && character < 0x7f; }
bool isAscii(char character) noexcept { return static_cast<unsigned char>(character) < 0x80; }

char asciiLower(char character) noexcept {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

/// Whether the bytes are printable ASCII and the accented letters of Western Europe's languages, each written
/// as one code point (U+00C0 to U+00FF, as 0xC3 and one more byte, without the letters that are no letter and
/// accent, such as U+00C6 and U+00DF).
///
/// In such text every code point is a character by itself that differs from any other by its letter or its
/// accent, or by its case alone. So the collator's answer is that of comparing the bytes with the case
/// folded, at a twentieth of the cost; nearly every path is such text.
bool isPlainText(std::string_view bytes) noexcept {
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        if (isPrintableAscii(bytes[at])) continue;
        if (bytes[at] != '\xC3' || ++at == bytes.size()) return false;
        const auto letter = static_cast<unsigned char>(bytes[at]);
        const unsigned lower = letter | 0x20U;
        if (letter < 0x80 || letter > 0xBF) return false;
        if (lower == 0xA6 || lower == 0xB0 || lower == 0xB7 || lower == 0xB8 || lower == 0xBE) return false;
        if (letter == 0x9F || letter == 0xBF) return false;
    }
    return true;
}

/// Folds the case of one byte of plain text: capital accented letters stand 0x20 below the small ones.
char plainLower(char character) noexcept {
    const auto byte = static_cast<unsigned char>(character);
    return byte >= 0x80 && byte < 0xA0 ? static_cast<char>(byte + 0x20) : asciiLower(character);
}

std::int32_t length32(std::string_view text) noexcept { return static_cast<std::int32_t>(text.size()); }

/// `bytes` must be well-formed UTF-8.
std::u16string utf16(std::string_view bytes) {
    std::u16string units(bytes.size(), u'\0');
    std::int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8(units.data(), static_cast<std::int32_t>(units.size()), &length, bytes.data(),
                  length32(bytes), &status);
    units.resize(static_cast<std::size_t>(length));
    return units;
}

/// Case plays no part at secondary strength, accents do. Collators are made once a language; reading one
/// from several threads is safe.
const UCollator* collator(Language language) {
    const auto open = [](const char* locale) {
        UErrorCode status = U_ZERO_ERROR;
        UCollator* made = ucol_open(locale, &status);
        ucol_setStrength(made, UCOL_SECONDARY);
        ucol_setAttribute(made, UCOL_NORMALIZATION_MODE, UCOL_ON, &status);
        return made;
    };
    static const UCollator* const english = open("en");
    static const UCollator* const portuguese = open("pt_BR");
    return language == Language::portuguese ? portuguese : english;
}

/// A search that keeps its needle between calls: a list is searched row by row for the same words.
class CollatedSearch {
public:
    bool contains(std::string_view text, std::string_view needle) {
        text_ = utf16(text);
        if (text_.empty()) return false;
        const Language language = currentLanguage();
        UErrorCode status = U_ZERO_ERROR;
        if (!search_ || needle != needleBytes_ || language != language_) {
            needleBytes_ = needle;
            needle_ = utf16(needle);
            language_ = language;
            search_.reset(usearch_openFromCollator(needle_.data(), static_cast<std::int32_t>(needle_.size()),
                                                   text_.data(), static_cast<std::int32_t>(text_.size()),
                                                   collator(language), nullptr, &status));
        } else {
            usearch_setText(search_.get(), text_.data(), static_cast<std::int32_t>(text_.size()), &status);
        }
        return usearch_first(search_.get(), &status) != USEARCH_DONE && U_SUCCESS(status);
    }

private:
    struct Close {
        void operator()(UStringSearch* search) const noexcept { usearch_close(search); }
    };

    std::string needleBytes_;
    std::u16string needle_;
    std::u16string text_;
    Language language_ = Language::english;
    std::unique_ptr<UStringSearch, Close> search_;
};

/// Where the user-perceived character that begins at 0 ends, and so on, over text that is kept by the caller.
class CharacterBreaks {
public:
    CharacterBreaks() {
        UErrorCode status = U_ZERO_ERROR;
        breaks_.reset(ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status));
    }

    void setText(std::string_view text) {
        UErrorCode status = U_ZERO_ERROR;
        text_.reset(
            utext_openUTF8(text_.release(), text.data(), static_cast<std::int64_t>(text.size()), &status));
        ubrk_setUText(breaks_.get(), text_.get(), &status);
    }

    /// The end of the next character in bytes; nothing left gives UBRK_DONE.
    std::int32_t next() { return ubrk_next(breaks_.get()); }

private:
    struct CloseBreaks {
        void operator()(UBreakIterator* breaks) const noexcept { ubrk_close(breaks); }
    };
    struct CloseText {
        void operator()(UText* text) const noexcept { utext_close(text); }
    };

    std::unique_ptr<UText, CloseText> text_;
    std::unique_ptr<UBreakIterator, CloseBreaks> breaks_;
};

CharacterBreaks& characterBreaks(std::string_view text) {
    thread_local CharacterBreaks breaks;
    breaks.setText(text);
    return breaks;
}

using CaseMapping = std::int32_t (*)(const UCaseMap*, char*, std::int32_t, const char*, std::int32_t,
                                     UErrorCode*);

/// `bytes` must be well-formed UTF-8.
std::string mapped(std::string_view bytes, CaseMapping mapping) {
    static const UCaseMap* const rootLocale = [] {
        UErrorCode status = U_ZERO_ERROR;
        return ucasemap_open("", 0, &status);
    }();
    std::string result(bytes.size() + 8, '\0');
    for (;;) {
        UErrorCode status = U_ZERO_ERROR;
        const std::int32_t length =
            mapping(rootLocale, result.data(), static_cast<std::int32_t>(result.size()), bytes.data(),
                    length32(bytes), &status);
        result.resize(static_cast<std::size_t>(length));
        if (status != U_BUFFER_OVERFLOW_ERROR) return result;
    }
}

/// The length of the run at the beginning that is well-formed, or that is not.
std::size_t runLength(std::string_view bytes, bool wellFormed) {
    std::int32_t at = 0;
    const std::int32_t end = length32(bytes);
    while (at < end) {
        const std::int32_t begin = at;
        UChar32 character = 0;
        U8_NEXT(bytes.data(), at, end, character);
        if ((character >= 0) != wellFormed) return static_cast<std::size_t>(begin);
    }
    return bytes.size();
}

/// Maps what is text and keeps the bytes that are not.
std::string mappedAround(std::string_view bytes, CaseMapping mapping) {
    std::string result;
    while (!bytes.empty()) {
        const std::size_t text = runLength(bytes, true);
        result += mapped(bytes.substr(0, text), mapping);
        bytes.remove_prefix(text);
        const std::size_t other = runLength(bytes, false);
        result += bytes.substr(0, other);
        bytes.remove_prefix(other);
    }
    return result;
}

} // namespace

bool containsIgnoringCase(std::string_view text, std::string_view needle) {
    if (needle.empty()) return true;
    if (isPlainText(needle) && isPlainText(text))
        return !std::ranges::search(text, needle, {}, plainLower, plainLower).empty();
    thread_local CollatedSearch search;
    if (isUtf8(text) && isUtf8(needle)) return search.contains(text, needle);
    return search.contains(isUtf8(text) ? std::string(text) : escapedForDisplay(text),
                           isUtf8(needle) ? std::string(needle) : escapedForDisplay(needle));
}

std::string_view trimmedBlanks(std::string_view text) noexcept {
    constexpr std::string_view blanks = " \t";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string trimmedWhiteSpace(std::string_view text) {
    std::int32_t begin = 0;
    std::int32_t end = length32(text);
    for (std::int32_t at = 0; at < end; begin = at) {
        UChar32 character = 0;
        U8_NEXT(text.data(), at, end, character);
        if (character < 0 || !u_isUWhiteSpace(character)) break;
    }
    for (std::int32_t at = end; at > begin; end = at) {
        UChar32 character = 0;
        U8_PREV(text.data(), begin, at, character);
        if (character < 0 || !u_isUWhiteSpace(character)) break;
    }
    return std::string(text.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin)));
}

std::string lowercased(std::string_view text) {
    if (!std::ranges::all_of(text, isAscii)) return mappedAround(text, ucasemap_utf8ToLower);
    std::string result(text);
    std::ranges::transform(result, result.begin(), asciiLower);
    return result;
}

std::string withFirstCharacterUppercased(std::string_view text) {
    if (text.empty()) return {};
    const std::int32_t end = characterBreaks(text).next();
    const std::string_view first = text.substr(0, static_cast<std::size_t>(end));
    return mappedAround(first, ucasemap_utf8ToUpper) + std::string(text.substr(first.size()));
}

std::size_t characterCount(std::string_view text) {
    if (std::ranges::all_of(text, isPrintableAscii)) return text.size();
    CharacterBreaks& breaks = characterBreaks(text);
    std::size_t count = 0;
    while (breaks.next() != UBRK_DONE) ++count;
    return count;
}

bool isNumberCharacter(char32_t character) noexcept {
    return (U_GET_GC_MASK(static_cast<UChar32>(character)) & U_GC_N_MASK) != 0;
}

std::u32string codePoints(std::string_view text) {
    std::u32string points;
    points.reserve(text.size());
    for (std::int32_t at = 0; at < length32(text);) {
        const std::int32_t begin = at;
        UChar32 character = 0;
        U8_NEXT(text.data(), at, length32(text), character);
        if (character >= 0)
            points.push_back(static_cast<char32_t>(character));
        else
            points.append(static_cast<std::size_t>(at - begin), U'\uFFFD');
    }
    return points;
}

} // namespace vesko
