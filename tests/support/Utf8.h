#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace vesko::testing {

/// Well-formed UTF-8 of any length and content, out of arbitrary numbers.
inline std::string utf8From(const std::vector<std::uint32_t>& numbers) {
    std::string text;
    const auto append = [&](std::uint32_t value) { text += static_cast<char>(value); };
    for (const std::uint32_t number : numbers) {
        // A third each of what is common, of what has two or three bytes, and of everything.
        const std::uint32_t range = number % 3 == 0 ? 0x80 : number % 3 == 1 ? 0x3000 : 0x110000;
        const std::uint32_t point = number / 3 % range;
        if (point < 0x80)
            append(point);
        else if (point < 0x800)
            append(0xC0 | point >> 6), append(0x80 | (point & 63));
        else if (point >= 0xD800 && point < 0xE000)
            append('?');
        else if (point < 0x10000)
            append(0xE0 | point >> 12), append(0x80 | (point >> 6 & 63)), append(0x80 | (point & 63));
        else
            append(0xF0 | point >> 18), append(0x80 | (point >> 12 & 63)), append(0x80 | (point >> 6 & 63)),
                append(0x80 | (point & 63));
    }
    return text;
}

} // namespace vesko::testing
