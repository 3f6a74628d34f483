#pragma once
#include "base/FileSystem.h"
#include "concurrency/WorkerPool.h"
#include "enrichment/EnrichmentCacheFile.h"
#include "enrichment/EnrichmentCacheHook.h"
#include "enrichment/EnrichmentStore.h"
#include "support/LanguageScope.h"
#include "support/ManualLoop.h"
#include "support/ScanCacheSamples.h"
#include "support/TempTree.h"
#include <gtest/gtest.h>

namespace vesko::testing {

using namespace std::chrono_literals;

inline const std::string pipeline = "afm-2026-06-i18n";

class SetDates : public DateSource {
public:
    Date now() const override { return date; }
    Date date = dateFromUnixSeconds(1'795'256'100);
};

/// Keeps every closure until `run`, so that a test decides when a write happens.
class HeldWorkers : public Executor {
public:
    void post(std::function<void()> closure) override { held.push_back(std::move(closure)); }
    void run() {
        for (auto& closure : std::exchange(held, {})) closure();
    }
    std::vector<std::function<void()>> held;
};

inline Enrichment entryOf(EnrichmentSource source, std::string name,
                          std::optional<std::string> version = std::nullopt) {
    Enrichment entry;
    entry.friendlyName = std::move(name);
    entry.reason = "Motivo";
    entry.source = source;
    entry.modelVersion = std::move(version);
    entry.updatedAt = dateFromUnixSeconds(1'700'000'000, 250'000'000);
    return entry;
}

inline CleanupGroup groupOf(std::string id, std::vector<ScannableItem> items) {
    CleanupGroup group;
    group.id = std::move(id);
    group.title = "Group's title";
    group.baselineSafety = Safety::seguro;
    group.baselineReason = "Group's reason";
    group.items = ItemList(std::move(items));
    return group;
}

class EnrichmentStoreTest : public ::testing::Test {
protected:
    ~EnrichmentStoreTest() override { loop.drain(); }

    const LanguageScope english{Language::english};
    const TempTree tree;
    const FileURL file = tree.url("Vesko/enrichment-cache.json");
    ManualLoop loop;
    HeldWorkers workers;
    SetDates dates;
    const TaskContext context{
        .home = &loop, .workers = &workers, .clock = &loop, .stop = {}, .registry = nullptr};
    EnrichmentStore store{file, pipeline, context, dates};
    int changes = 0;
    const ChangeSource::Subscription subscription = store.changes().subscribe([this] { ++changes; });

    void pass(Duration duration) {
        loop.advance(duration);
        workers.run();
        loop.drain();
    }
    EnrichmentEntries inFile() const {
        const std::string bytes = bytesOf(file);
        return EnrichmentCacheFile::decode(bytes, currentLocaleIdentifier(), pipeline);
    }
    void put(const EnrichmentEntries& entries) {
        tree.file("Vesko/enrichment-cache.json",
                  EnrichmentCacheFile::encode(entries, currentLocaleIdentifier()));
    }
    void loadText(std::string_view bytes) {
        tree.file("Vesko/enrichment-cache.json", bytes);
        store.load();
    }
    std::string nameSeededFor(const CleanupGroup& group) {
        store.seedHeuristics({group});
        const auto entry = store.lookup(group.items[0].enrichmentKey);
        return entry ? entry->friendlyName : "none";
    }
};

} // namespace vesko::testing
