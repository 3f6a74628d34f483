#include "enrichment/ReviewBatch.h"

#include <array>
#include <utility>

namespace vesko {
namespace {

constexpr std::array<std::string_view, 3> actionWords{"promote", "demote", "reclassify"};
constexpr SchemaChoices actionChoices{"ReviewActionKind", actionWords};

/// The pass speaks one language, whatever the person's: none of its texts is ever shown.
constexpr std::array<SchemaProperty, 6> properties{{
    {"id", "O mesmo id recebido na entrada."},
    {"action", "", &actionChoices},
    {"targetGroupID", "ID do grupo alvo para promote/reclassify; vazio para demote.", nullptr, true},
    {"friendlyName", "Nome amigavel opcional.", nullptr, true},
    {"safety", "seguro ou revisar.", &draftSafetyChoices},
    {"reason", "Motivo curto em portugues."},
}};
constexpr AnswerSchema batchSchema{"ReviewBatch", "ReviewEntry", properties};

ReviewActionKind actionOf(std::string_view word) {
    if (word == actionWords[0]) return ReviewActionKind::promote;
    return word == actionWords[1] ? ReviewActionKind::demote : ReviewActionKind::reclassify;
}

/// The values stand in the order of the properties above, and those that are not optional are there.
ReviewEntry entryOf(AnswerEntry&& values) {
    ReviewEntry entry;
    entry.id = std::move(values[0]).value();
    entry.action = actionOf(values[1].value());
    entry.targetGroupID = std::move(values[2]);
    entry.friendlyName = std::move(values[3]);
    entry.safety = draftSafetyOf(values[4].value());
    entry.reason = std::move(values[5]).value();
    return entry;
}

} // namespace

const AnswerSchema& ReviewBatch::schema() noexcept { return batchSchema; }

std::expected<ReviewBatch, std::string> ReviewBatch::decoded(std::string_view json) {
    auto answer = decodeAnswer(batchSchema, json);
    if (!answer) return std::unexpected(std::move(answer.error()));
    ReviewBatch batch;
    batch.entries.reserve(answer->size());
    for (AnswerEntry& values : *answer) batch.entries.push_back(entryOf(std::move(values)));
    return batch;
}

} // namespace vesko
