#pragma once
#include <string>
#include <string_view>

namespace vesko {

/// A prompt as the text that adapters have to hand on: each byte that is no part of well-formed UTF-8 becomes
/// "\xNN" with two upper-case hexadecimal digits, as do the control characters of such a line. Line feeds
/// stay, and a prompt that is UTF-8 stays as it is.
std::string promptText(std::string_view bytes);

} // namespace vesko
