#pragma once
#include "enrichment/CleanupEnriching.h"

namespace vesko {

/// Stands where there is no language model: its streams end at once.
class UnavailableEnrichment final : public CleanupEnriching {
public:
    AsyncStream<EnrichmentPatch> enrich(std::vector<CleanupGroup>) override {
        return AsyncStream<EnrichmentPatch>([](const auto& producer) { producer.finish(); });
    }
};

} // namespace vesko
