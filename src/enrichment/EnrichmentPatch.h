#pragma once
#include "core/EnrichmentKey.h"
#include "enrichment/Enrichment.h"

namespace vesko {

/// One answer of the enrichment pass.
struct EnrichmentPatch {
    EnrichmentKey key;
    Enrichment enrichment;

    friend bool operator==(const EnrichmentPatch&, const EnrichmentPatch&) = default;
};

} // namespace vesko
