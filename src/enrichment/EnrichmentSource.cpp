#include "enrichment/EnrichmentSource.h"

namespace vesko {

std::string_view enrichmentSourceWord(EnrichmentSource source) noexcept {
    return source == EnrichmentSource::model ? "model" : "heuristic";
}

std::optional<EnrichmentSource> enrichmentSourceFromWord(std::string_view word) noexcept {
    for (const EnrichmentSource source : {EnrichmentSource::heuristic, EnrichmentSource::model})
        if (enrichmentSourceWord(source) == word) return source;
    return std::nullopt;
}

} // namespace vesko
