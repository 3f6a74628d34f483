#include "base/ByteFormat.h"

#include "base/StringCatalog.h"

#include <array>
#include <string_view>

namespace vesko {

namespace {

struct Unit {
    std::string_view name;
    std::uint64_t bytes;
    /// The most digits behind the decimal separator, and the power of ten that makes them whole.
    int digits;
    std::uint64_t scale;
};

constexpr std::array<Unit, 4> units{{
    {"KB", 1'000, 0, 1},
    {"MB", 1'000'000, 1, 10},
    {"GB", 1'000'000'000, 2, 100},
    {"TB", 1'000'000'000'000, 2, 100},
}};

/// The amount in the unit's smallest step (tenths of a MB, hundredths of a GB), rounded half to even. The
/// unit's size is a multiple of its scale, so that no product can overflow.
std::uint64_t steps(std::uint64_t bytes, const Unit& unit) {
    const std::uint64_t step = unit.bytes / unit.scale;
    const std::uint64_t whole = bytes / step;
    const std::uint64_t rest = bytes % step;
    if (rest * 2 < step) return whole;
    if (rest * 2 > step) return whole + 1;
    return whole + whole % 2;
}

std::string grouped(std::uint64_t number, char separator) {
    std::string digits = std::to_string(number);
    for (std::size_t at = digits.size(); at > 3;) digits.insert(at -= 3, 1, separator);
    return digits;
}

} // namespace

std::string formatBytes(std::int64_t bytes) {
    const bool portuguese = currentLanguage() == Language::portuguese;
    // Negation by subtraction holds for the smallest number too, whose magnitude no signed number has.
    const std::uint64_t magnitude =
        bytes < 0 ? 0 - static_cast<std::uint64_t>(bytes) : static_cast<std::uint64_t>(bytes);
    const auto* unit = units.begin();
    while (unit + 1 != units.end() && magnitude >= (unit + 1)->bytes) ++unit;
    if (unit + 1 != units.end() && steps(magnitude, *unit) >= 1000 * unit->scale) ++unit;

    const std::uint64_t amount = steps(magnitude, *unit);
    std::string text = bytes < 0 && amount > 0 ? "-" : "";
    text += grouped(amount / unit->scale, portuguese ? '.' : ',');
    if (const std::uint64_t fraction = amount % unit->scale; fraction > 0) {
        std::string digits = std::to_string(fraction);
        digits.insert(0, static_cast<std::size_t>(unit->digits) - digits.size(), '0');
        digits.erase(digits.find_last_not_of('0') + 1);
        text += (portuguese ? ',' : '.') + digits;
    }
    text += ' ';
    text += unit->name;
    return text;
}

} // namespace vesko
