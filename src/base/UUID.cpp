#include "base/UUID.h"

#include <array>
#include <random>
#include <string_view>

namespace vesko {

std::string newUUID() {
    std::random_device source;
    std::array<unsigned char, 16> bytes{};
    for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(source());
    bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0Fu) | 0x40u);
    bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3Fu) | 0x80u);
    static constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        if (index == 4 || index == 6 || index == 8 || index == 10) text += '-';
        text += digits[bytes[index] >> 4u];
        text += digits[bytes[index] & 0x0Fu];
    }
    return text;
}

} // namespace vesko
