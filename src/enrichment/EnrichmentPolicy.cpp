#include "enrichment/EnrichmentPolicy.h"

namespace vesko {

std::unordered_set<EnrichmentKey> modelEnrichableKeys(const std::vector<CleanupGroup>& groups) {
    std::unordered_set<EnrichmentKey> keys;
    for (const CleanupGroup& group : groups) {
        if (group.providerID.rawValue != "discover") continue;
        for (const ScannableItem& item : group.items) keys.insert(item.enrichmentKey);
    }
    return keys;
}

} // namespace vesko
