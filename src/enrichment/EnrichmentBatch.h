#pragma once
#include "enrichment/AnswerSchema.h"
#include "enrichment/DraftSafety.h"
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vesko {

/// What the model says of one item.
struct EnrichedEntry {
    std::string id; ///< of the line that it answers
    std::string friendlyName;
    DraftSafety safety = DraftSafety::revisar;
    std::string reason;
    std::optional<std::string> kind;

    friend bool operator==(const EnrichedEntry&, const EnrichedEntry&) = default;
};

/// The whole answer to a prompt of the enrichment pass.
struct EnrichmentBatch {
    std::vector<EnrichedEntry> entries;

    static const AnswerSchema& schema() noexcept;
    /// Any difference from the schema fails the whole.
    static std::expected<EnrichmentBatch, std::string> decoded(std::string_view json);

    friend bool operator==(const EnrichmentBatch&, const EnrichmentBatch&) = default;
};

} // namespace vesko
