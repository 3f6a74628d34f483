#pragma once
#include "core/ScannableItem.h"
#include <vector>

namespace vesko {

/// Puts the items in the order that every list has: largest first, equal sizes as they stand.
void sortLargestFirst(std::vector<ScannableItem>& items);

} // namespace vesko
