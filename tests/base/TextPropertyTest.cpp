#include "base/Text.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <string>
#include <vector>

namespace vesko {
namespace {

rc::Gen<std::string> printableAscii() {
    return rc::gen::container<std::string>(rc::gen::inRange<char>(0x20, 0x7f));
}

/// A letter that is not ASCII, standing apart from the rest, sends the text past the plain comparison.
std::string withoutShortcut(const std::string& text) { return text + " \u0416"; }

RC_GTEST_PROP(TextProperty, PlainComparisonAndCollatorAgreeOnAscii, ()) {
    const std::string text = *printableAscii();
    const std::string needle = *printableAscii();
    RC_PRE(!needle.empty());
    RC_PRE(needle.back() != ' '); // It would match the blank that sends the text past the comparison.
    RC_ASSERT(containsIgnoringCase(text, needle) == containsIgnoringCase(withoutShortcut(text), needle));
}

/// Few characters, so that needles are found often: letters with and without accents in both cases, and all
/// kinds of neighbours of the accented ones in Unicode's table.
rc::Gen<std::string> latinText() {
    static const std::vector<std::string> pieces{
        "a", "A", "e", "c", "C", "n", "-", " ", "/", "ã", "Ã", "á", "Á", "ç", "Ç", "é",      "É",
        "ñ", "Ñ", "ü", "Ü", "ý", "Ý", "ÿ", "æ", "Æ", "ß", "ø", "Ø", "÷", "×", "þ", "ð",      "ss",
        "å", "Å", "à", "À", "ö", "Ö", "í", "ê", "Ê", "ô", "õ", "ú", "û", "ä", "Ä", "\u0178", "\u0303"};
    return rc::gen::map(rc::gen::container<std::vector<std::string>>(rc::gen::elementOf(pieces)),
                        [](const std::vector<std::string>& chosen) {
                            std::string text;
                            for (const std::string& piece : chosen) text += piece;
                            return text;
                        });
}

RC_GTEST_PROP(TextProperty, PlainComparisonAndCollatorAgreeOnAccentedLetters, ()) {
    const std::string text = *latinText();
    const std::string needle = *rc::gen::resize(3, latinText());
    RC_PRE(!needle.empty());
    RC_PRE(needle.back() != ' ');
    RC_ASSERT(containsIgnoringCase(text, needle) == containsIgnoringCase(withoutShortcut(text), needle));
}

RC_GTEST_PROP(TextProperty, APieceOfATextIsFoundInItWhateverItsCase, ()) {
    const std::string text = *printableAscii();
    RC_PRE(!text.empty());
    const std::size_t begin = *rc::gen::inRange<std::size_t>(0, text.size());
    const std::string piece = text.substr(begin, *rc::gen::inRange<std::size_t>(1, text.size() - begin + 1));
    RC_ASSERT(containsIgnoringCase(text, lowercased(piece)));
    RC_ASSERT(containsIgnoringCase(withoutShortcut(text), lowercased(piece)));
}

RC_GTEST_PROP(TextProperty, AnyBytesAreTakenWithoutHarm, ()) {
    const std::string bytes = *rc::gen::arbitrary<std::string>();
    const std::string needle = *rc::gen::arbitrary<std::string>();
    containsIgnoringCase(bytes, needle);
    RC_ASSERT(codePoints(bytes).size() <= bytes.size());
    RC_ASSERT(characterCount(bytes) <= bytes.size());
    RC_ASSERT(lowercased(lowercased(bytes)) == lowercased(bytes));
    RC_ASSERT(trimmedWhiteSpace(trimmedWhiteSpace(bytes)) == trimmedWhiteSpace(bytes));
}

} // namespace
} // namespace vesko
