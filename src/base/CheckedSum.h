#pragma once
#include "base/ProgrammingError.h"
#include <cstdint>

namespace vesko {

/// Sums and products of byte amounts. A result beyond 63 bits stops the process with a message: such a figure
/// can only come from a mistake, and a wrapped one would be shown as if it were true.
inline std::int64_t checkedSum(std::int64_t a, std::int64_t b) noexcept {
    std::int64_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum)) programmingError("a sum of bytes does not fit 63 bits");
    return sum;
}

inline std::int64_t checkedProduct(std::int64_t a, std::int64_t b) noexcept {
    std::int64_t product = 0;
    if (__builtin_mul_overflow(a, b, &product)) programmingError("a product of bytes does not fit 63 bits");
    return product;
}

} // namespace vesko
