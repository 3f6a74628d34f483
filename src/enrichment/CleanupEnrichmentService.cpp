#include "enrichment/CleanupEnrichmentService.h"

#include "base/Environment.h"
#include "base/StringCatalog.h"
#include "concurrency/Concurrency.h"
#include "enrichment/AskModel.h"
#include "enrichment/DisplayName.h"
#include "enrichment/EnrichmentBatch.h"
#include <algorithm>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace vesko {
namespace {

using PendingItem = CleanupEnrichmentService::PendingItem;
using Patches = std::vector<EnrichmentPatch>;

/// What one run works with; shared by its tasks, which may outlive the service.
struct Run {
    CleanupEnrichmentService::Settings settings;
    std::shared_ptr<LanguageModel> model;
    const DateSource& dates;
    std::vector<PendingItem> items;
    AsyncStream<EnrichmentPatch>::Producer stream;

    std::size_t batchCount() const { return (items.size() + settings.batchSize - 1) / settings.batchSize; }
    std::span<const PendingItem> batch(std::size_t index) const {
        const std::size_t begin = index * settings.batchSize;
        return std::span(items).subspan(begin, std::min(settings.batchSize, items.size() - begin));
    }
};

/// An entry whose id is not of this batch answers nothing that was asked.
Patches patchesOf(const EnrichmentBatch& answer, std::span<const PendingItem> batch, const Run& run) {
    std::unordered_map<std::string, EnrichmentKey> keys;
    for (const PendingItem& item : batch) keys.emplace(item.id, item.key);
    Patches patches;
    for (const EnrichedEntry& entry : answer.entries) {
        const auto key = keys.find(entry.id);
        if (key == keys.end()) continue;
        Enrichment enrichment;
        enrichment.friendlyName = entry.friendlyName;
        enrichment.safety = entry.safety == DraftSafety::revisar ? Safety::revisar : Safety::seguro;
        enrichment.reason = entry.reason;
        enrichment.kind = entry.kind;
        enrichment.source = EnrichmentSource::model;
        enrichment.modelVersion = run.settings.modelVersion;
        enrichment.updatedAt = run.dates.now();
        patches.push_back({key->second, std::move(enrichment)});
    }
    return patches;
}

Task<Patches> runBatch(std::shared_ptr<const Run> run, std::size_t index) {
    Patches patches;
    const std::span<const PendingItem> batch = run->batch(index);
    if (batch.empty() || isDevelopmentHost()) co_return patches;
    const bool available = co_await canAsk(run->model);
    if (!available) co_return patches;
    std::string instructions = CleanupEnrichmentService::instructions();
    std::string prompt = CleanupEnrichmentService::prompt(batch);
    const std::optional<std::string> text =
        co_await askModel(run->model, std::move(instructions), std::move(prompt), &EnrichmentBatch::schema());
    if (!text) co_return patches;
    const auto answer = EnrichmentBatch::decoded(*text);
    if (answer) patches = patchesOf(*answer, batch, *run);
    co_return patches;
}

/// Asks for the batches in order, so many at a time, and hands their answers on as they come.
Task<void> runBatches(std::shared_ptr<const Run> run, TaskGroup<Patches>& group) {
    const TaskContext context = co_await currentContext();
    const Instant start = context.clock->now();
    const std::size_t count = run->batchCount();
    std::size_t next = 0;
    const auto addNext = [&] {
        group.addTask([run, index = next] { return runBatch(run, index); });
        ++next;
    };
    while (next < std::min(count, run->settings.maxConcurrentBatches)) addNext();
    for (;;) {
        auto finished = co_await group.next();
        if (!finished) co_return;
        if (!finished->failed())
            for (EnrichmentPatch& patch : finished->take()) run->stream.yield(std::move(patch));
        const bool isLate = context.clock->now() - start > run->settings.latencyBudget;
        if (isLate || context.stop.stopRequested()) {
            group.cancelAll();
            co_return;
        }
        if (next < count) addNext();
    }
}

Task<void> drive(std::shared_ptr<const Run> run) {
    if (isDevelopmentHost()) co_return;
    const bool available = co_await canAsk(run->model);
    if (!available || run->items.empty()) co_return;
    auto body = [&run](TaskGroup<Patches>& group) { return runBatches(run, group); };
    auto batches = withTaskGroup<Patches>(body);
    co_await batches;
}

} // namespace

CleanupEnrichmentService::CleanupEnrichmentService(Settings settings, std::shared_ptr<LanguageModel> model,
                                                   TaskContext context, const DateSource& dates)
    : settings_(std::move(settings)), model_(std::move(model)), context_(std::move(context)), dates_(dates) {}

AsyncStream<EnrichmentPatch> CleanupEnrichmentService::enrich(std::vector<CleanupGroup> groups) {
    return AsyncStream<EnrichmentPatch>([&](const AsyncStream<EnrichmentPatch>::Producer& producer) {
        auto run =
            std::make_shared<const Run>(Run{settings_, model_, dates_, pendingItems(groups), producer});
        const auto driver = spawn(context_, [run]() -> Task<void> {
            co_await drive(run);
            run->stream.finish();
        });
        producer.onTermination([driver](StreamEnd) { driver.cancel(); });
    });
}

std::vector<PendingItem> CleanupEnrichmentService::pendingItems(const std::vector<CleanupGroup>& groups) {
    std::vector<PendingItem> pending;
    std::unordered_set<EnrichmentKey> seen;
    for (const CleanupGroup& group : groups) {
        if (group.providerID.rawValue != "discover") continue;
        for (const ScannableItem& item : group.items) {
            if (!seen.insert(item.enrichmentKey).second) continue;
            pending.push_back({std::to_string(pending.size()), item.enrichmentKey,
                               friendlyName(item.name(), item.url.parent()), item.url.path()});
        }
    }
    return pending;
}

std::string CleanupEnrichmentService::instructions() {
    // The sentence in the middle is for the model alone and the same in every language.
    return localized("ai.instructions") +
           "\nThe reason field must explain what happens if the user deletes this item, not what the file "
           "is.\n" +
           localized("ai.responseLanguage");
}

std::string CleanupEnrichmentService::prompt(std::span<const PendingItem> batch) {
    std::string lines;
    for (const PendingItem& item : batch) {
        if (!lines.empty()) lines += '\n';
        lines += item.id + " | " + promptField(item.name) + " | " + promptField(item.path);
    }
    return localized("ai.batchPrompt %@", lines);
}

} // namespace vesko
