#pragma once
#include "base/Date.h"
#include "base/FileURL.h"
#include "base/Observation.h"
#include "base/Prefetch.h"
#include "concurrency/Clock.h"
#include "concurrency/Spawn.h"
#include "concurrency/TaskContext.h"
#include "core/CleanupGroup.h"
#include "enrichment/Enrichment.h"
#include "enrichment/ResolvedEnrichment.h"
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace vesko {

/// The one table of what is known of each key, and the owner of its file. An entry begins as a guess made
/// from the group that found the item and is overwritten by the model, its safety excepted: a model may
/// rewrite words, but it does not make an item safer than the group that found it said it was.
///
/// Main thread only. Every failure of the file is silent, as if the file were empty.
class EnrichmentStore {
public:
    /// How long a persist waits for the next one.
    static constexpr Duration debounce = std::chrono::milliseconds(800);

    /// Reads nothing yet. `modelVersion` is the pipeline whose entries are accepted from the file; `context`
    /// is where the delayed write waits and works.
    EnrichmentStore(FileURL fileURL, std::string modelVersion, TaskContext context,
                    const DateSource& dates = systemDates());
    EnrichmentStore(const EnrichmentStore&) = delete;
    EnrichmentStore& operator=(const EnrichmentStore&) = delete;
    /// "enrichment-cache.json" in the application-support folder.
    static FileURL defaultFileURL();

    /// The file as it was read ahead.
    struct Prefetched {
        EnrichmentEntries entries;
        std::string localeIdentifier;
        std::string modelVersion;
        std::optional<Date> fileDate;
    };
    using Reading = Prefetch<Prefetched>;
    /// Begins to read a file on a thread; for a program that has no loop yet to make the store with.
    static std::shared_ptr<Reading> startReading(const FileURL& fileURL, const std::string& modelVersion);

    const EnrichmentEntries& entries() const noexcept { return *entries_; }
    /// Tells of each change of the entries, once an operation.
    ChangeSource& changes() noexcept { return changes_; }
    const FileURL& fileURL() const noexcept { return fileURL_; }

    std::optional<Enrichment> lookup(const EnrichmentKey& key) const;
    /// Gives every item without an entry one that is made from its group; existing entries stay.
    void seedHeuristics(const std::vector<CleanupGroup>& groups);
    /// Takes the model's answers. A key that has an entry keeps its safety.
    void apply(const EnrichmentEntries& patches);
    /// Replaces the entries by those of the file, as one change. Blocks while it reads.
    void load();
    /// Begins to read the file on a thread, so that the next load finds the work done. What a load gives
    /// stays the same: a file that was replaced meanwhile is read afresh.
    void prefetch();
    /// Takes over a reading that was started before there was a store.
    void adopt(std::shared_ptr<Reading> reading) { reading_ = std::move(reading); }
    /// Writes the entries of this moment after the debounce; a later call takes the place of this one.
    void schedulePersist();
    /// Drops the table, a pending write and the file.
    void clear();

    /// Whether the model has not answered for the key yet.
    bool needsModelEnrichment(const EnrichmentKey& key) const;
    /// What to show of an item. Without a group the baseline is to look first, for no stated reason.
    ResolvedEnrichment resolve(const ScannableItem& item, const CleanupGroup* group,
                               const std::unordered_set<EnrichmentKey>& analyzingKeys,
                               const std::unordered_set<FileURL>& aiDiscoveredURLs) const;

private:
    struct Writing;

    static Prefetched read(const FileURL& url, const std::string& modelVersion);

    ChangeSource changes_;
    Observed<EnrichmentEntries> entries_{changes_};
    FileURL fileURL_;
    std::string modelVersion_;
    TaskContext context_;
    const DateSource& dates_;
    std::shared_ptr<Writing> writing_;
    TaskHandle<void> persistTask_;
    std::shared_ptr<Reading> reading_;
};

} // namespace vesko
