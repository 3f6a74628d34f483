#pragma once
#include "base/Date.h"
#include "concurrency/Clock.h"
#include "concurrency/TaskContext.h"
#include "enrichment/CleanupEnriching.h"
#include "enrichment/LanguageModel.h"
#include <chrono>
#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace vesko {

/// Asks the language model for names and reasons of what the discovery probes found, a few items at a time.
/// Everything else has its texts from the catalog and is never sent. A question that fails is not repeated:
/// its items keep what they have and are offered again after the next scan.
class CleanupEnrichmentService final : public CleanupEnriching {
public:
    struct Settings {
        std::size_t batchSize = 12;           ///< items in one prompt
        std::size_t maxConcurrentBatches = 2; ///< questions at one time
        /// Once more than this has passed no further question is asked. It cuts none short: what was asked
        /// last may take as long as it takes, until another one that was asked beside it returns.
        Duration latencyBudget = std::chrono::seconds(20);
        std::string modelVersion = "afm-2026-06-i18n"; ///< written into every entry
    };
    /// One item as a prompt shows it.
    struct PendingItem {
        std::string id; ///< decimal counter, unique within the run
        EnrichmentKey key;
        std::string name;
        std::string path;

        friend bool operator==(const PendingItem&, const PendingItem&) = default;
    };

    /// `context` is where the runs work and by whose clock they count. A run that is under way does not need
    /// the service any more.
    CleanupEnrichmentService(Settings settings, std::shared_ptr<LanguageModel> model, TaskContext context,
                             const DateSource& dates = systemDates());

    AsyncStream<EnrichmentPatch> enrich(std::vector<CleanupGroup> groups) override;

    /// The items that the model is asked for, in list order; of several with one key the first.
    static std::vector<PendingItem> pendingItems(const std::vector<CleanupGroup>& groups);
    /// What the model is told before every question, in the current language.
    static std::string instructions();
    /// The question for these items, one line each, whatever their names hold.
    static std::string prompt(std::span<const PendingItem> batch);

private:
    const Settings settings_;
    const std::shared_ptr<LanguageModel> model_;
    const TaskContext context_;
    const DateSource& dates_;
};

} // namespace vesko
