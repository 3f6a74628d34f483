#include "core/DiskUsage.h"

#include "base/Paths.h"
#include "core/BundleIdentifier.h"
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <sstream>

namespace vesko {
namespace {

/// The same rule in other words: the first line that is not empty, its first word, digits with a sign at
/// most.
std::int64_t plainReading(const std::string& output) {
    if (!isUtf8(output)) return 0;
    std::string line;
    for (const char byte : output) {
        const bool endsLine = byte == '\n' || byte == '\r' || byte == '\v' || byte == '\f';
        if (endsLine && !line.empty()) break;
        if (!endsLine) line += byte;
    }
    std::string word;
    for (const char byte : line) {
        const bool isBlank = byte == ' ' || byte == '\t';
        if (isBlank && !word.empty()) break;
        if (!isBlank) word += byte;
    }
    const bool isNegative = word.starts_with('-');
    if (isNegative || word.starts_with('+')) word.erase(0, 1);
    if (word.empty() || word.size() > 15 || word.find_first_not_of("0123456789") != std::string::npos)
        return 0;
    std::int64_t value = 0;
    for (const char digit : word) value = value * 10 + (digit - '0');
    return (isNegative ? -value : value) * 1024;
}

rc::Gen<std::string> anyOutput() {
    const auto piece = rc::gen::element<std::string>(
        "0", "7", "12", "4096", "000", "-", "+", "K", ".", ",", "\t", " ", "\n", "\r", "\v", "\f", "/x",
        "du: ", "\xc3\xa9", "\xff", std::string(1, '\0'), "\xc2\xa0");
    return rc::gen::map(rc::gen::container<std::vector<std::string>>(piece), [](const auto& pieces) {
        std::string output;
        for (const std::string& each : pieces) output += each;
        return output;
    });
}

/// Numbers of more than 15 digits are left to tests of their own: they may be beyond 63 bits.
bool hasLongNumber(const std::string& output) {
    std::size_t digits = 0;
    for (const char byte : output) {
        digits = byte >= '0' && byte <= '9' ? digits + 1 : 0;
        if (digits > 15) return true;
    }
    return false;
}

RC_GTEST_PROP(DiskUsageProperties, AnyOutputIsReadByTheRule, ()) {
    const std::string output = *anyOutput();
    RC_PRE(!hasLongNumber(output));
    RC_ASSERT(bytesFromDuOutput(output) == plainReading(output));
}

RC_GTEST_PROP(DiskUsageProperties, ArbitraryBytesAreReadByTheRule, (const std::string& output)) {
    RC_PRE(!hasLongNumber(output));
    RC_ASSERT(bytesFromDuOutput(output) == plainReading(output));
}

RC_GTEST_PROP(DiskUsageProperties, WhatTheProgramPrintsIsReadBack, ()) {
    const auto kibibytes = *rc::gen::inRange<std::int64_t>(0, INT64_MAX / 1024);
    const auto path = *rc::gen::string<std::string>();
    const std::string output = std::to_string(kibibytes) + "\t/" + path + "\n";
    RC_ASSERT(bytesFromDuOutput(output) == (isUtf8(output) ? kibibytes * 1024 : 0));
}

RC_GTEST_PROP(BundleIdentifierProperties, ArbitraryBytesAreNoPropertyList, (const std::string& bytes)) {
    RC_ASSERT(!bundleIdentifierFromPropertyList(bytes));
    RC_ASSERT(!bundleIdentifierFromPropertyList("bplist00" + bytes));
    bundleIdentifierFromPropertyList("<plist><dict>" + bytes + "</dict></plist>"); // anything but a crash
}

} // namespace
} // namespace vesko
