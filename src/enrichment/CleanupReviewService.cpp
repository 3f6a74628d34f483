#include "enrichment/CleanupReviewService.h"

#include "base/Environment.h"
#include "base/FileSystem.h"
#include "concurrency/Concurrency.h"
#include "core/CatalogRows.h"
#include "core/GroupBuilders.h"
#include "core/ProbeCatalog.h"
#include "enrichment/AskModel.h"
#include "enrichment/ReviewBatch.h"
#include "enrichment/ReviewPromotionHeuristics.h"
#include <algorithm>
#include <iterator>
#include <optional>
#include <unordered_map>
#include <utility>

namespace vesko {
namespace {

constexpr std::size_t mostCandidates = 50;
constexpr std::int64_t largeBytes = 104'857'600;
constexpr std::chrono::hours lately(7 * 24);

constexpr std::string_view preamble =
    "Revise candidatos de limpeza do Vesko. Para cada entrada devolva ReviewEntry com o MESMO id.\n"
    "promote = adicionar candidato perdido a um grupo existente (targetGroupID obrigatorio).\n"
    "reclassify = mover para outro grupo (targetGroupID obrigatorio).\n"
    "Use SOMENTE targetGroupID da lista abaixo. Nunca invente IDs.\n"
    "Preferir grupos dedicados (cache.*, logs.stale, trash) em vez de discover.* quando o caminho combinar.\n"
    "Na duvida, mantenha o item e use revisar para safety.\n"
    "\n"
    "Grupos validos:\n";

constexpr std::string_view instructionText =
    "Voce revisa resultados de varredura de disco do Vesko em macOS.\n"
    "Promote apenas candidatos claros de limpeza. Nunca remova itens da lista.\n"
    "Nunca invente caminhos. Safety revisar na duvida.\n"
    "Pastas em ~/Library/Logs antigas -> logs.stale. Lixeira -> trash.\n"
    "Caches de package managers (Homebrew, npm, pnpm, SwiftPM, JetBrains, etc.) -> cache.* correspondente.";

/// The groups that an answer may name, one a line, in the language in which they are first asked for.
const std::string& validGroups() {
    static const std::string list = [] {
        std::vector<std::string> lines;
        lines.reserve(catalogOrder.size());
        for (const std::string_view id : catalogOrder)
            lines.push_back("- " + std::string(id) + ": " + probeTitle(id));
        std::ranges::sort(lines);
        std::string joined;
        for (const std::string& line : lines) joined += (joined.empty() ? "" : "\n") + line;
        return joined;
    }();
    return list;
}

std::string lineOf(const PendingReviewItem& item) {
    const std::string group = item.currentGroupID ? promptField(*item.currentGroupID) : "none";
    return item.id + " | " + promptField(item.name) + " | " + promptField(item.path) + " | group:" + group +
           " | " + std::to_string(item.size) + " bytes";
}

bool touchedLately(const FileURL& url, Date now) {
    const std::optional<Date> date = contentModificationDate(url);
    return date && *date > now - lately;
}

/// Numbers the items in the order in which they come.
class Collection {
public:
    void add(const ScanReviewCandidate& found) {
        items_.push_back({std::to_string(items_.size()), found.url, found.size, found.name, found.isDirectory,
                          found.url.path(), std::nullopt});
    }
    void add(const ScannableItem& item, const std::string& groupID) {
        items_.push_back({std::to_string(items_.size()), item.url, item.size, item.name(), item.isDirectory,
                          item.url.path(), groupID});
    }
    std::vector<PendingReviewItem> take() { return std::move(items_); }

private:
    std::vector<PendingReviewItem> items_;
};

/// What one entry of an answer asks for, as far as it may. A demotion is a word that the model knows and that
/// does nothing: taking something off the list is not for a model to decide.
std::optional<ReviewPatch> patchOf(const ReviewEntry& entry, const PendingReviewItem& item) {
    if (entry.action == ReviewActionKind::demote || !entry.targetGroupID) return std::nullopt;
    const MetadataByID& catalog = probeMetadataByID();
    const auto target = catalog.find(*entry.targetGroupID);
    if (target == catalog.end()) return std::nullopt;
    if (entry.action == ReviewActionKind::reclassify)
        return ReviewPromotionHeuristics::moveTo(target->second, item);
    return ReviewPatch::promote(ReviewPromotionHeuristics::movedItem(item), target->second);
}

} // namespace

CleanupReviewService::CleanupReviewService(Settings settings, std::shared_ptr<LanguageModel> model,
                                           const DateSource& dates)
    : settings_(settings), model_(std::move(model)), dates_(dates) {}

Task<std::vector<ReviewPatch>> CleanupReviewService::review(std::vector<CleanupGroup> groups,
                                                            std::vector<ScanReviewCandidate> candidates) {
    // Dates may have to be read from the disk, so the collecting is no work for the main thread.
    auto collecting = offload([&] {
        return ReviewPromotionHeuristics::promote(
            collectPendingReviewItems(groups, std::move(candidates), dates_.now()));
    });
    ReviewPromotionHeuristics::Promotions placed = co_await collecting;
    std::vector<ReviewPatch> result = std::move(placed.patches);
    if (placed.unplaced.empty() || isDevelopmentHost()) co_return result;
    const bool available = co_await canAsk(model_);
    if (!available) co_return result;
    std::vector<ReviewPatch> answered = co_await askAbout(std::move(placed.unplaced));
    std::ranges::move(answered, std::back_inserter(result));
    co_return result;
}

Task<std::vector<ReviewPatch>> CleanupReviewService::askAbout(std::vector<PendingReviewItem> items) {
    const TaskContext context = co_await currentContext();
    const Instant start = context.clock->now();
    std::vector<ReviewPatch> result;
    std::span<const PendingReviewItem> left(items);
    for (std::size_t asked = 0; asked < settings_.maxBatches && !left.empty(); ++asked) {
        if (context.stop.stopRequested()) break;
        if (context.clock->now() - start > settings_.latencyBudget) break;
        const auto batch = left.first(std::min(batchSize, left.size()));
        left = left.subspan(batch.size());
        std::string question = prompt(batch);
        const std::optional<std::string> answer = co_await askModel(
            model_, std::string(instructions()), std::move(question), &ReviewBatch::schema());
        if (!answer) continue;
        std::ranges::move(patches(*answer, batch), std::back_inserter(result));
    }
    co_return result;
}

std::vector<PendingReviewItem>
CleanupReviewService::collectPendingReviewItems(const std::vector<CleanupGroup>& groups,
                                                std::vector<ScanReviewCandidate> candidates, Date now) {
    Collection collection;
    std::ranges::stable_sort(candidates, std::ranges::greater(), &ScanReviewCandidate::size);
    candidates.resize(std::min(candidates.size(), mostCandidates));
    for (const ScanReviewCandidate& candidate : candidates) collection.add(candidate);
    for (const CleanupGroup& group : groups) {
        if (group.providerID.rawValue != "discover") continue;
        const bool isDoubtful = group.baselineSafety == Safety::revisar;
        const bool isProject = group.id.starts_with("project.");
        for (const ScannableItem& item : group.items) {
            if (isDoubtful && item.size >= largeBytes) collection.add(item, group.id);
            if (isProject && touchedLately(item.url, now)) collection.add(item, group.id);
        }
    }
    return collection.take();
}

std::string_view CleanupReviewService::instructions() { return instructionText; }

std::string CleanupReviewService::prompt(std::span<const PendingReviewItem> batch) {
    std::string lines;
    for (const PendingReviewItem& item : batch) lines += (lines.empty() ? "" : "\n") + lineOf(item);
    return std::string(preamble) + validGroups() + "\n\n" + lines;
}

std::vector<ReviewPatch> CleanupReviewService::patches(std::string_view answer,
                                                       std::span<const PendingReviewItem> batch) {
    std::vector<ReviewPatch> made;
    const auto decoded = ReviewBatch::decoded(answer);
    if (!decoded) return made;
    std::unordered_map<std::string_view, const PendingReviewItem*> asked;
    for (const PendingReviewItem& item : batch) asked.emplace(item.id, &item);
    for (const ReviewEntry& entry : decoded->entries) {
        const auto item = asked.find(entry.id);
        if (item == asked.end()) continue;
        if (auto patch = patchOf(entry, *item->second)) made.push_back(std::move(*patch));
    }
    return made;
}

} // namespace vesko
