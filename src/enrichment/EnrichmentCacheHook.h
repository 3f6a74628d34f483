#pragma once
#include "base/Observation.h"
#include <string_view>

namespace vesko {

/// A broadcast inside this process that asks whoever holds enrichment to drop it. A hook: nothing in the
/// program posts it, and nothing may depend on its being posted. Main thread only.
inline constexpr std::string_view enrichmentCacheShouldClear = "VeskoEnrichmentCacheShouldClear";

/// Tells every listener of that name, before it returns.
void postNotification(std::string_view name);
/// The listener is told until the subscription goes.
[[nodiscard]] ChangeSource::Subscription subscribeToNotification(std::string_view name,
                                                                 ChangeSource::Listener listener);

} // namespace vesko
