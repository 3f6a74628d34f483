#include "base/Text.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <string>

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
