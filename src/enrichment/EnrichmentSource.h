#pragma once
#include <optional>
#include <string_view>

namespace vesko {

/// Who wrote an entry.
enum class EnrichmentSource {
    heuristic, ///< made from the group that found the item
    model,     ///< the language model
};

/// "heuristic" or "model".
std::string_view enrichmentSourceWord(EnrichmentSource source) noexcept;
/// Nothing for any other word.
std::optional<EnrichmentSource> enrichmentSourceFromWord(std::string_view word) noexcept;

} // namespace vesko
