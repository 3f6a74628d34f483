#pragma once
#include <cstdint>
#include <string>

namespace vesko {

/// A byte amount in the form used everywhere on screen and in messages: decimal units KB, MB, GB, TB, never
/// plain bytes; no fraction in KB, at most one digit in MB, at most two in GB and TB, trailing zeros dropped,
/// rounded half to even; separators of the current language. Below one KB and zero are an amount in KB. A
/// figure that rounding lifts to 1000 moves to the next unit.
std::string formatBytes(std::int64_t bytes);

} // namespace vesko
