#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace vesko {

/// What stands between the line feeds, in its order, without the empty pieces. A carriage return is no end.
std::vector<std::string> nonEmptyLines(std::string_view text);

} // namespace vesko
