#include "enrichment/EnrichmentBatch.h"

#include <array>
#include <utility>

namespace vesko {
namespace {

constexpr std::array<SchemaProperty, 5> properties{{
    {"id", "The same id received in the input, used to match the response."},
    {"friendlyName", "Short human-readable name."},
    {"safety", "seguro = rebuildable junk; revisar = may contain user data.", &draftSafetyChoices},
    {"reason", "Short reason in the user's language (English or Brazilian Portuguese)."},
    {"kind", "Optional category (e.g. cache, app, log).", nullptr, true},
}};
constexpr AnswerSchema batchSchema{"EnrichmentBatch", "EnrichedEntry", properties};

/// The values stand in the order of the properties above, and those that are not optional are there.
EnrichedEntry entryOf(AnswerEntry&& values) {
    EnrichedEntry entry;
    entry.id = std::move(values[0]).value();
    entry.friendlyName = std::move(values[1]).value();
    entry.safety = draftSafetyOf(values[2].value());
    entry.reason = std::move(values[3]).value();
    entry.kind = std::move(values[4]);
    return entry;
}

} // namespace

const AnswerSchema& EnrichmentBatch::schema() noexcept { return batchSchema; }

std::expected<EnrichmentBatch, std::string> EnrichmentBatch::decoded(std::string_view json) {
    auto answer = decodeAnswer(batchSchema, json);
    if (!answer) return std::unexpected(std::move(answer.error()));
    EnrichmentBatch batch;
    batch.entries.reserve(answer->size());
    for (AnswerEntry& values : *answer) batch.entries.push_back(entryOf(std::move(values)));
    return batch;
}

} // namespace vesko
