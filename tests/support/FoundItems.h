#pragma once
#include "core/ScanProbe.h"
#include <stdexcept>

namespace vesko::testing {

/// The items of what a probe found; without a group the test ends.
inline ItemList itemsOf(const ProbeResult& result) {
    if (!result.group) throw std::runtime_error("the probe found nothing");
    return result.group->items;
}

} // namespace vesko::testing
