#include "base/QuietReading.h"

namespace vesko {

void readQuietly() noexcept {}

PlaceholderFetching::PlaceholderFetching() noexcept = default;
PlaceholderFetching::~PlaceholderFetching() = default;

} // namespace vesko
