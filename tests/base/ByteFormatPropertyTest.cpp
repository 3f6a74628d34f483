#include "base/ByteFormat.h"

#include "base/LanguageGuard.h"
#include <cmath>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <string>

namespace vesko {
namespace {

/// Amounts of every magnitude; a plain draw would hardly ever give a small one.
rc::Gen<std::int64_t> amounts() {
    return rc::gen::resize(
        rc::kNominalSize,
        rc::gen::map(rc::gen::pair(rc::gen::inRange(0, 63), rc::gen::arbitrary<std::uint64_t>()),
                     [](const std::pair<int, std::uint64_t>& drawn) {
                         return static_cast<std::int64_t>(drawn.second >> (63 - drawn.first) >> 1);
                     }));
}

/// The amount that an English text names, in hundredths of the unit, and the unit in bytes.
struct Read {
    __int128 hundredths = 0;
    std::int64_t unit = 0;
    int digits = 0;
};

Read readBack(const std::string& text) {
    Read read;
    bool behind = false;
    for (const char character : text.substr(0, text.find(' '))) {
        if (character == ',' || character == '-') continue;
        if (character == '.') {
            behind = true;
            continue;
        }
        read.hundredths = read.hundredths * 10 + (character - '0');
        if (behind) ++read.digits;
    }
    for (int digit = read.digits; digit < 2; ++digit) read.hundredths *= 10;
    const std::string unit = text.substr(text.find(' ') + 1);
    read.unit = unit == "KB"   ? 1'000
                : unit == "MB" ? 1'000'000
                : unit == "GB" ? 1'000'000'000
                : unit == "TB" ? 1'000'000'000'000
                               : 0;
    return read;
}

RC_GTEST_PROP(ByteFormatProperty, TheTextNamesTheAmountWithinHalfAStep, ()) {
    LanguageGuard language(Language::english);
    const std::int64_t bytes = *amounts();
    const Read read = readBack(formatBytes(bytes));
    RC_ASSERT(read.unit > 0);
    const int allowed = read.unit == 1'000 ? 0 : read.unit == 1'000'000 ? 1 : 2;
    RC_ASSERT(read.digits <= allowed);
    const std::int64_t step = read.unit / (allowed == 0 ? 1 : allowed == 1 ? 10 : 100);
    __int128 difference = read.hundredths * (read.unit / 100) - bytes;
    if (difference < 0) difference = -difference;
    RC_ASSERT(difference * 2 <= step);
}

RC_GTEST_PROP(ByteFormatProperty, ALargerAmountNeverReadsSmaller, ()) {
    LanguageGuard language(Language::english);
    const std::int64_t first = *amounts();
    const std::int64_t second = *amounts();
    const Read small = readBack(formatBytes(std::min(first, second)));
    const Read large = readBack(formatBytes(std::max(first, second)));
    RC_ASSERT(small.hundredths * small.unit <= large.hundredths * large.unit);
}

RC_GTEST_PROP(ByteFormatProperty, ANegativeAmountReadsAsThePositiveOneWithASign, ()) {
    LanguageGuard language(Language::english);
    const std::int64_t bytes = *amounts();
    RC_PRE(bytes > 500); // Less reads as zero, which has no sign.
    RC_ASSERT(formatBytes(-bytes) == "-" + formatBytes(bytes));
}

RC_GTEST_PROP(ByteFormatProperty, PortugueseSwapsTheSeparatorsAndNothingElse, ()) {
    LanguageGuard language(Language::english);
    const std::int64_t bytes = *amounts();
    std::string swapped = formatBytes(bytes);
    for (char& character : swapped) {
        if (character == '.')
            character = ',';
        else if (character == ',')
            character = '.';
    }
    setCurrentLanguage(Language::portuguese);
    RC_ASSERT(formatBytes(bytes) == swapped);
}

} // namespace
} // namespace vesko
