#pragma once
#include "enrichment/AnswerSchema.h"
#include "enrichment/DraftSafety.h"
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vesko {

/// What a model may want done with an item.
enum class ReviewActionKind { promote, demote, reclassify };

/// What the model says of one item. Only the action and the group are used: name, safety and reason are asked
/// for because giving them makes the decision better.
struct ReviewEntry {
    std::string id; ///< of the line that it answers
    ReviewActionKind action = ReviewActionKind::promote;
    std::optional<std::string> targetGroupID;
    std::optional<std::string> friendlyName;
    DraftSafety safety = DraftSafety::revisar;
    std::string reason;

    friend bool operator==(const ReviewEntry&, const ReviewEntry&) = default;
};

/// The whole answer to a prompt of the review pass.
struct ReviewBatch {
    std::vector<ReviewEntry> entries;

    static const AnswerSchema& schema() noexcept;
    /// Any difference from the schema fails the whole.
    static std::expected<ReviewBatch, std::string> decoded(std::string_view json);

    friend bool operator==(const ReviewBatch&, const ReviewBatch&) = default;
};

} // namespace vesko
