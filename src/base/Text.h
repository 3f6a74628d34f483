#pragma once
#include <string>
#include <string_view>

namespace vesko {

/// Whether `needle` occurs in `text`, ignoring case by the rules of the current language and keeping accents
/// apart. An empty needle occurs in every text. Input that is no UTF-8 is compared by its escaped form.
bool containsIgnoringCase(std::string_view text, std::string_view needle);

/// Without blanks and tabs at both ends; line ends stay.
std::string_view trimmedBlanks(std::string_view text) noexcept;
/// Without white space and line ends (Unicode's) at both ends.
std::string trimmedWhiteSpace(std::string_view text);

/// Lower case by the root locale, so that names and file extensions fold alike in every language.
std::string lowercased(std::string_view text);
/// The first user-perceived character in upper case (root locale), the rest unchanged.
std::string withFirstCharacterUppercased(std::string_view text);

/// Number of user-perceived characters.
std::size_t characterCount(std::string_view text);
/// Whether a code point is a number character (Unicode general categories Nd, Nl, No).
bool isNumberCharacter(char32_t character) noexcept;
/// The code points of UTF-8 text; bytes that are no UTF-8 yield U+FFFD each.
std::u32string codePoints(std::string_view text);

} // namespace vesko
