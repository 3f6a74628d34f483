#pragma once
#include <string>

namespace vesko {

/// A new random UUID in its string form, upper case: different at each call.
std::string newUUID();

} // namespace vesko
