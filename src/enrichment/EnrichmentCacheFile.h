#pragma once
#include "enrichment/Enrichment.h"
#include <string>
#include <string_view>

namespace vesko {

/// The JSON document of the enrichment cache, schema 2.
struct EnrichmentCacheFile {
    /// Entries stand in the table's order. One whose key or texts are no UTF-8 has no form in JSON and is
    /// left out alone.
    static std::string encode(const EnrichmentEntries& entries, std::string_view localeIdentifier);

    /// Empty for a damaged file, another schema, and another language or none. Entries of the model are kept
    /// only when its pipeline has this very version; of several with one key the last counts.
    static EnrichmentEntries decode(std::string_view bytes, std::string_view localeIdentifier,
                                    std::string_view modelVersion);
};

} // namespace vesko
