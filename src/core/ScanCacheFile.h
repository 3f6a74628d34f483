#pragma once
#include "core/ScanCacheSnapshot.h"
#include <optional>
#include <string>
#include <string_view>

namespace vesko {

/// The JSON document of the scan cache, schema 1. Its texts are those of one language, which it names.
///
/// Left out: an item's name follows from its path, its display label is made by the next scan, and a
/// section's title is looked up by its id. A path or key that is no UTF-8 has no form in JSON; its entry is
/// left out alone.
struct ScanCacheFile {
    static std::string encode(const ScanCacheSnapshot& snapshot, std::string_view localeIdentifier);

    /// Nothing for a damaged file, another schema, another language, an unknown safety word, or sizes whose
    /// sum has more than 63 bits. An unknown relevance policy reads as the standard one. Sections carry their
    /// id as title, dates come back with whole seconds.
    static std::optional<ScanCacheSnapshot> decode(std::string_view bytes, std::string_view localeIdentifier);
};

} // namespace vesko
