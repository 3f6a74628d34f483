#include "probes/DockerSize.h"

#include "base/Text.h"
#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <locale> // brings the locale-bound functions of the C library on every system
#include <string>

namespace vesko {
namespace {

struct Unit {
    std::string_view suffix;
    double bytes;
};
/// In the order in which they are tried: every one of them ends in the last.
constexpr std::array<Unit, 5> units{{{"TB", 1e12}, {"GB", 1e9}, {"MB", 1e6}, {"KB", 1e3}, {"B", 1}}};

char asciiUpper(char character) noexcept {
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
}

/// The number that all of the text is, with a point for the fraction in every locale.
std::optional<double> wholeNumber(const std::string& text) {
    static const locale_t plain = ::newlocale(LC_ALL_MASK, "C", nullptr);
    // The C library would skip white space in front.
    if (text.empty() || std::isspace(static_cast<unsigned char>(text.front()))) return std::nullopt;
    char* end = nullptr;
    const double value = ::strtod_l(text.c_str(), &end, plain);
    if (end != text.c_str() + text.size()) return std::nullopt;
    return value;
}

/// Toward zero. What is no number or beyond the range gives nothing.
std::optional<std::int64_t> truncated(double bytes) noexcept {
    constexpr double limit = 9'223'372'036'854'775'808.0;
    if (!(bytes >= -limit && bytes < limit)) return std::nullopt;
    return static_cast<std::int64_t>(bytes);
}

} // namespace

std::optional<std::int64_t> parseDockerSize(std::string_view text) {
    std::string amount = trimmedWhiteSpace(text);
    std::ranges::transform(amount, amount.begin(), asciiUpper);
    const auto unit = std::ranges::find_if(
        units, [&](const Unit& each) { return std::string_view(amount).ends_with(each.suffix); });
    if (unit == units.end()) return std::nullopt;
    amount.resize(amount.size() - unit->suffix.size());
    const std::optional<double> value = wholeNumber(std::string(trimmedBlanks(amount)));
    if (!value) return std::nullopt;
    return truncated(*value * unit->bytes);
}

} // namespace vesko
