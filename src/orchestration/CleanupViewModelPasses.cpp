#include "orchestration/CleanupViewModel.h"

#include "base/StringCatalog.h"
#include "concurrency/Concurrency.h"
#include "core/GroupBuilders.h"
#include "enrichment/EnrichmentPolicy.h"
#include "orchestration/NextTurn.h"
#include <cstddef>
#include <utility>

namespace vesko {
namespace {

/// How long a burst of answers is waited out before the entries are encoded for the disk.
constexpr Duration persistDelay = std::chrono::milliseconds(800);

/// More than an honest question brings. A model may answer for one item a thousand times, and each answer is
/// a walk over the list.
constexpr std::size_t patchesInATurn = 16;

/// Of each group the items that wait for an answer; groups without any are left out.
std::vector<CleanupGroup> itemsOfKeys(const std::vector<CleanupGroup>& groups,
                                      const std::unordered_set<EnrichmentKey>& keys) {
    std::vector<CleanupGroup> work;
    for (const CleanupGroup& group : groups) {
        std::vector<ScannableItem> items;
        for (const ScannableItem& item : group.items)
            if (keys.contains(item.enrichmentKey)) items.push_back(item);
        if (!items.empty()) work.push_back(withItems(group, ItemList(std::move(items))));
    }
    return work;
}

} // namespace

bool CleanupViewModel::isAIBusy() const { return *isEnriching || *isReviewing || !analyzingKeys->empty(); }

void CleanupViewModel::stopEnrichment() {
    std::exchange(enrichmentTask_, {}).cancel();
    std::exchange(persistTask_, {}).cancel();
    analyzingKeys = {};
    isEnriching = false;
    stopReview();
}

void CleanupViewModel::stopReview() {
    std::exchange(reviewTask_, {}).cancel();
    isReviewing = false;
}

void CleanupViewModel::clearReviewMessage() { reviewMessage = std::nullopt; }

void CleanupViewModel::startEnrichment() {
    stopEnrichment();
    if (!parts_.isEnrichmentAvailable() || groups->empty()) return;
    std::unordered_set<EnrichmentKey> pending = modelEnrichableKeys(*groups);
    std::erase_if(pending, [&](const EnrichmentKey& key) {
        return !parts_.enrichmentStore->needsModelEnrichment(key);
    });
    if (pending.empty()) return;
    std::vector<CleanupGroup> work = itemsOfKeys(*groups, pending);
    isEnriching = true;
    analyzingKeys = std::move(pending);
    enrichmentTask_ =
        spawn(parts_.tasks, [model = weak_from_this(), enricher = parts_.enricher, work = std::move(work)] {
            return runEnrichment(model, enricher, work);
        });
}

Task<void> CleanupViewModel::runEnrichment(std::weak_ptr<CleanupViewModel> model,
                                           std::shared_ptr<CleanupEnriching> enricher,
                                           std::vector<CleanupGroup> workList) {
    const TaskContext context = co_await currentContext();
    AsyncStream<EnrichmentPatch> patches = enricher->enrich(std::move(workList));
    for (std::size_t taken = 1;; ++taken) {
        const std::optional<EnrichmentPatch> patch = co_await patches.next();
        // Whoever cancelled has reset the state, and a newer pass may own it by now.
        if (context.stop.stopRequested()) co_return;
        {
            const auto self = model.lock();
            if (!self) co_return;
            if (!patch) {
                self->analyzingKeys = {};
                self->isEnriching = false;
                co_return;
            }
            self->takePatch(*patch);
        }
        if (taken % patchesInATurn == 0) co_await nextTurn();
    }
}

void CleanupViewModel::takePatch(const EnrichmentPatch& patch) {
    parts_.enrichmentStore->apply({{patch.key, patch.enrichment}});
    analyzingKeys.modify([&](std::unordered_set<EnrichmentKey>& keys) { keys.erase(patch.key); });
    reapplySelection({patch.key});
    scheduleEnrichmentPersist();
}

void CleanupViewModel::scheduleEnrichmentPersist() {
    persistTask_.cancel();
    persistTask_ = spawn(parts_.tasks, [model = weak_from_this()]() -> Task<void> {
        const TaskContext context = co_await currentContext();
        co_await sleepFor(persistDelay);
        const auto self = model.lock();
        if (self && !context.stop.stopRequested()) self->parts_.enrichmentStore->schedulePersist();
    });
}

void CleanupViewModel::startReview() {
    stopReview();
    if (!parts_.isReviewAvailable()) return;
    if (groups->empty() && pendingReviewCandidates->empty()) return;
    isReviewing = true;
    reviewTask_ = spawn(parts_.tasks, [model = weak_from_this(), reviewer = parts_.reviewer, list = *groups,
                                       candidates = *pendingReviewCandidates] {
        return runReview(model, reviewer, list, candidates);
    });
}

Task<void> CleanupViewModel::runReview(std::weak_ptr<CleanupViewModel> model,
                                       std::shared_ptr<CleanupReviewing> reviewer,
                                       std::vector<CleanupGroup> list,
                                       std::vector<ScanReviewCandidate> candidates) {
    const TaskContext context = co_await currentContext();
    std::vector<ReviewPatch> patches = co_await reviewer->review(std::move(list), std::move(candidates));
    const auto self = model.lock();
    if (!self || context.stop.stopRequested()) co_return;
    co_await self->applyReviewPatches(std::move(patches));
    if (!context.stop.stopRequested()) self->isReviewing = false;
}

Task<void> CleanupViewModel::applyReviewPatches(std::vector<ReviewPatch> patches) {
    const auto self = shared_from_this();
    const TaskContext context = co_await currentContext();
    for (;;) {
        const std::uint64_t before = groups.revision();
        ReviewOutcome outcome;
        ScanReport report;
        auto work = offload([&, list = *groups]() mutable {
            outcome = applyPatches(std::move(list), patches);
            report = significanceEngine_.evaluate(outcome.groups, {}, *parts_.dates);
        });
        co_await work;
        if (context.stop.stopRequested()) co_return;
        // A scan that runs meanwhile has put other groups on the screen: they are what the patches apply to.
        if (groups.revision() != before) continue;
        if (outcome.applied > 0) commitReview(outcome, std::move(report));
        co_return;
    }
}

void CleanupViewModel::commitReview(const ReviewOutcome& outcome, ScanReport report) {
    const auto withoutMoved = [&](URLSet& ids) {
        for (const FileURL& url : outcome.movedURLs) ids.erase(url);
    };
    selectedItemIDs.modify(withoutMoved);
    userOverriddenIDs.modify(withoutMoved);
    aiDiscoveredURLs.modify(
        [&](URLSet& ids) { ids.insert(outcome.discoveredURLs.begin(), outcome.discoveredURLs.end()); });
    reconsider(outcome.keysToReconsider, outcome.groups);
    parts_.enrichmentStore->seedHeuristics(outcome.groups);
    reviewMessage = localized("review.promotedOnly %lld", outcome.applied);
    groups = std::move(report.groups);
    foundTotalBytes = report.foundTotalBytes;
    indexedBytes = report.foundTotalBytes;
}

} // namespace vesko
