#include "base/JsonWriter.h"

#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace vesko {
namespace {

/// The letter behind the backslash for what RFC 8259 gives a short form; 0 for the rest.
char shortEscape(char character) noexcept {
    switch (character) {
    case '"': return '"';
    case '\\': return '\\';
    case '\n': return 'n';
    case '\r': return 'r';
    case '\t': return 't';
    default: return 0;
    }
}

/// By byte: what RFC 8259 does not allow inside of a string.
constexpr std::array<bool, 256> mustBeEscaped = [] {
    std::array<bool, 256> table{};
    for (std::size_t byte = 0; byte < 0x20; ++byte) table[byte] = true;
    table['"'] = table['\\'] = true;
    return table;
}();

/// Within these bounds figures are written without an exponent, as the platform's own encoder has it.
constexpr double leastPlain = 1e-4;
constexpr double firstNotPlain = 18'014'398'509'481'984.0; // 2^54

} // namespace

void JsonWriter::separate() {
    if (needsComma_) bytes_ += ',';
    needsComma_ = true;
}

void JsonWriter::open(char bracket) {
    separate();
    bytes_ += bracket;
    needsComma_ = false;
}

void JsonWriter::close(char bracket) {
    bytes_ += bracket;
    needsComma_ = true;
}

void JsonWriter::quoted(std::string_view text) {
    constexpr std::string_view digits = "0123456789abcdef";
    bytes_ += '"';
    std::size_t plain = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (!mustBeEscaped[static_cast<unsigned char>(text[at])]) continue;
        bytes_.append(text, plain, at - plain);
        plain = at + 1;
        bytes_ += '\\';
        if (const char letter = shortEscape(text[at])) {
            bytes_ += letter;
            continue;
        }
        bytes_ += "u00";
        bytes_ += digits[static_cast<unsigned char>(text[at]) >> 4];
        bytes_ += digits[static_cast<unsigned char>(text[at]) & 15];
    }
    bytes_.append(text, plain);
    bytes_ += '"';
}

void JsonWriter::key(std::string_view name) {
    separate();
    quoted(name);
    bytes_ += ':';
    needsComma_ = false;
}

void JsonWriter::string(std::string_view text) {
    separate();
    quoted(text);
}

void JsonWriter::integer(std::int64_t value) {
    separate();
    std::array<char, 24> digits;
    bytes_.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr);
}

void JsonWriter::number(double value) {
    separate();
    std::array<char, 40> digits;
    char* const end = digits.data() + digits.size();
    const double size = std::abs(value);
    const bool isPlain = size == 0 || (size >= leastPlain && size < firstNotPlain);
    const auto written = isPlain ? std::to_chars(digits.data(), end, value, std::chars_format::fixed)
                                 : std::to_chars(digits.data(), end, value, std::chars_format::scientific);
    bytes_.append(digits.data(), written.ptr);
}

void JsonWriter::boolean(bool value) {
    separate();
    bytes_ += value ? "true" : "false";
}

void JsonWriter::null() {
    separate();
    bytes_ += "null";
}

std::string JsonWriter::take() {
    needsComma_ = false;
    return std::exchange(bytes_, {});
}

} // namespace vesko
