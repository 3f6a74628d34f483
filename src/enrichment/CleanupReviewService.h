#pragma once
#include "base/Date.h"
#include "concurrency/Clock.h"
#include "enrichment/CleanupReviewing.h"
#include "enrichment/LanguageModel.h"
#include "enrichment/PendingReviewItem.h"
#include <chrono>
#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vesko {

/// Looks at the largest finds and at the doubtful items of the discovery groups, and says which of them
/// belong in a dedicated group. A table of places answers first; what it does not know goes to the language
/// model, one question after another. What the model answers counts only where it names an item that it was
/// asked for and a group of the catalog, and it can't take anything off the list.
class CleanupReviewService final : public CleanupReviewing {
public:
    struct Settings {
        std::size_t maxBatches = 3; ///< questions in one run
        /// Once more than this has passed no further question is asked; it cuts none short.
        Duration latencyBudget = std::chrono::seconds(30);
    };
    static constexpr std::size_t batchSize = 10;

    /// Must outlive its runs.
    CleanupReviewService(Settings settings, std::shared_ptr<LanguageModel> model,
                         const DateSource& dates = systemDates());

    Task<std::vector<ReviewPatch>> review(std::vector<CleanupGroup> groups,
                                          std::vector<ScanReviewCandidate> candidates) override;

    /// What is looked at: the 50 largest candidates, then what is large and doubtful in the discovery groups,
    /// and what was lately touched in a project. One file may be there twice. Reads dates from the disk where
    /// there is a project: may block.
    static std::vector<PendingReviewItem>
    collectPendingReviewItems(const std::vector<CleanupGroup>& groups,
                              std::vector<ScanReviewCandidate> candidates, Date now);
    /// What the model is told before every question.
    static std::string_view instructions();
    /// The question for these items, one line each, whatever their names hold.
    static std::string prompt(std::span<const PendingReviewItem> batch);
    /// What of a model's answer is taken.
    static std::vector<ReviewPatch> patches(std::string_view answer,
                                            std::span<const PendingReviewItem> batch);

private:
    Task<std::vector<ReviewPatch>> askAbout(std::vector<PendingReviewItem> items);

    const Settings settings_;
    const std::shared_ptr<LanguageModel> model_;
    const DateSource& dates_;
};

} // namespace vesko
