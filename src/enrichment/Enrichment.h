#pragma once
#include "base/Date.h"
#include "core/EnrichmentKey.h"
#include "core/Safety.h"
#include "enrichment/EnrichmentSource.h"
#include <optional>
#include <string>
#include <unordered_map>

namespace vesko {

/// What is known of a key beyond the scan itself.
struct Enrichment {
    std::string friendlyName; ///< shown instead of the file name
    Safety safety = Safety::revisar;
    std::string reason;              ///< one sentence on what deleting means
    std::optional<std::string> kind; ///< such as cache, app or log; only the model tells it
    EnrichmentSource source = EnrichmentSource::heuristic;
    std::optional<std::string> modelVersion; ///< of the pipeline that wrote it; absent for heuristic entries
    Date updatedAt;

    friend bool operator==(const Enrichment&, const Enrichment&) = default;
};

using EnrichmentEntries = std::unordered_map<EnrichmentKey, Enrichment>;

} // namespace vesko
