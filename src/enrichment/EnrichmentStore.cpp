#include "enrichment/EnrichmentStore.h"

#include "base/FileSystem.h"
#include "base/Paths.h"
#include "base/StateFile.h"
#include "base/StringCatalog.h"
#include "concurrency/Offload.h"
#include "concurrency/Sleep.h"
#include "enrichment/DisplayName.h"
#include "enrichment/EnrichmentCacheFile.h"

#include <algorithm>
#include <atomic>
#include <mutex>

namespace vesko {
namespace {

/// A cache group is named by its title; several places in it are told apart by where they lie.
std::string heuristicName(const CleanupGroup& group, const ScannableItem& item) {
    if (!group.id.starts_with("cache.")) return friendlyName(item.url);
    if (group.items.size() == 1) return group.title;
    const auto hint = cacheLocationHint(item.url);
    return hint ? group.title + " · " + *hint : group.title;
}

void addHeuristics(EnrichmentEntries& entries, const std::vector<CleanupGroup>& groups, Date now) {
    std::size_t items = 0;
    for (const CleanupGroup& group : groups) items += group.items.size();
    // Only at first: a table that has grown may shrink by it, and every entry would be placed anew.
    if (entries.empty()) entries.reserve(items);
    for (const CleanupGroup& group : groups) {
        for (const ScannableItem& item : group.items) {
            const auto [place, isNew] = entries.try_emplace(item.enrichmentKey);
            if (!isNew) continue;
            place->second.friendlyName = heuristicName(group, item);
            place->second.safety = group.baselineSafety;
            place->second.reason = group.baselineReason;
            place->second.updatedAt = now;
        }
    }
}

} // namespace

/// What the writes of one store share. They follow one another, so that a slow one never ends after a later
/// one.
struct EnrichmentStore::Writing {
    std::mutex turn;
    std::atomic<unsigned> clears{0};

    /// Blocks. A clear that comes while the bytes are on their way takes them back.
    void write(const FileURL& url, std::string_view bytes, const StopToken& token) {
        const std::lock_guard lock(turn);
        const unsigned before = clears;
        if (token.stopRequested()) return;
        writeStateFile(url, bytes);
        if (clears != before) (void)removeFile(url);
    }
};

EnrichmentStore::EnrichmentStore(FileURL fileURL, std::string modelVersion, TaskContext context,
                                 const DateSource& dates)
    : fileURL_(std::move(fileURL)), modelVersion_(std::move(modelVersion)), context_(std::move(context)),
      dates_(dates), writing_(std::make_shared<Writing>()) {}

FileURL EnrichmentStore::defaultFileURL() {
    return applicationSupportFolder().appending("enrichment-cache.json");
}

std::optional<Enrichment> EnrichmentStore::lookup(const EnrichmentKey& key) const {
    const auto found = entries_->find(key);
    if (found == entries_->end()) return std::nullopt;
    return found->second;
}

void EnrichmentStore::seedHeuristics(const std::vector<CleanupGroup>& groups) {
    const auto lacksEntry = [this](const ScannableItem& item) {
        return !entries_->contains(item.enrichmentKey);
    };
    // Usually everything has its entry, and then nothing has changed.
    if (std::ranges::none_of(
            groups, [&](const CleanupGroup& group) { return std::ranges::any_of(group.items, lacksEntry); }))
        return;
    entries_.modify([&](EnrichmentEntries& entries) { addHeuristics(entries, groups, dates_.now()); });
}

void EnrichmentStore::apply(const EnrichmentEntries& patches) {
    if (patches.empty()) return;
    entries_.modify([&](EnrichmentEntries& entries) {
        for (const auto& [key, incoming] : patches) {
            const auto [place, isNew] = entries.try_emplace(key, incoming);
            if (isNew) continue;
            const Safety safety = place->second.safety;
            place->second = incoming;
            place->second.source = EnrichmentSource::model;
            place->second.safety = safety;
        }
    });
}

EnrichmentStore::Prefetched EnrichmentStore::read(const FileURL& url, const std::string& modelVersion) {
    Prefetched result{{}, std::string(currentLocaleIdentifier()), modelVersion, contentModificationDate(url)};
    if (const auto bytes = readStateFile(url))
        result.entries = EnrichmentCacheFile::decode(*bytes, result.localeIdentifier, modelVersion);
    return result;
}

std::shared_ptr<EnrichmentStore::Reading> EnrichmentStore::startReading(const FileURL& fileURL,
                                                                        const std::string& modelVersion) {
    auto reading = std::make_shared<Reading>();
    reading->start([fileURL, modelVersion] { return read(fileURL, modelVersion); });
    return reading;
}

void EnrichmentStore::prefetch() { reading_ = startReading(fileURL_, modelVersion_); }

void EnrichmentStore::load() {
    const auto reading = std::exchange(reading_, nullptr);
    auto ready = reading ? reading->take() : std::nullopt;
    if (!ready || ready->localeIdentifier != currentLocaleIdentifier() ||
        ready->modelVersion != modelVersion_ || ready->fileDate != contentModificationDate(fileURL_))
        ready = read(fileURL_, modelVersion_);
    entries_.modify([&](EnrichmentEntries& entries) { entries = std::move(ready->entries); });
}

void EnrichmentStore::schedulePersist() {
    persistTask_.cancel();
    std::string bytes = EnrichmentCacheFile::encode(*entries_, currentLocaleIdentifier());
    persistTask_ =
        spawn(context_, [bytes = std::move(bytes), url = fileURL_, writing = writing_]() -> Task<void> {
            co_await sleepFor(debounce);
            auto write = offload([&](StopToken token) { writing->write(url, bytes, token); });
            co_await write;
        });
}

void EnrichmentStore::clear() {
    persistTask_.cancel();
    persistTask_ = {};
    ++writing_->clears;
    entries_.modify([](EnrichmentEntries& entries) { entries.clear(); });
    (void)removeFile(fileURL_);
}

bool EnrichmentStore::needsModelEnrichment(const EnrichmentKey& key) const {
    const auto found = entries_->find(key);
    return found == entries_->end() || found->second.source != EnrichmentSource::model;
}

ResolvedEnrichment EnrichmentStore::resolve(const ScannableItem& item, const CleanupGroup* group,
                                            const std::unordered_set<EnrichmentKey>& analyzingKeys,
                                            const std::unordered_set<FileURL>& aiDiscoveredURLs) const {
    const auto found = entries_->find(item.enrichmentKey);
    const Enrichment* entry = found == entries_->end() ? nullptr : &found->second;
    ResolvedEnrichment resolved;
    if (group) {
        resolved.safety = group->baselineSafety;
        resolved.reason = group->baselineReason;
    }
    resolved.friendlyName = displayName(item, entry ? std::optional(entry->friendlyName) : std::nullopt);
    if (entry) {
        resolved.safety = entry->safety;
        resolved.reason = entry->reason;
        resolved.isAIRefined = entry->source == EnrichmentSource::model;
    }
    resolved.isAnalyzing = analyzingKeys.contains(item.enrichmentKey);
    resolved.isAIDiscovered = aiDiscoveredURLs.contains(item.url);
    return resolved;
}

} // namespace vesko
