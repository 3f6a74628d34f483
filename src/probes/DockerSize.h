#pragma once
#include <cstdint>
#include <optional>
#include <string_view>

namespace vesko {

/// Bytes from a size as docker prints it: a decimal number and one of the units TB, GB, MB, KB and B in any
/// case, with decimal multipliers, cut off below the byte. "1.5GB" is 1500000000. Nothing for a text without
/// a unit ("0"), with a unit of another kind ("1MiB", "2PB"), without a number, and for what does not fit 63
/// bits and the sign. The number is read by the C locale, whatever the person's.
std::optional<std::int64_t> parseDockerSize(std::string_view text);

} // namespace vesko
