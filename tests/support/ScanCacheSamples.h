#pragma once
#include "core/ScanCacheSnapshot.h"
#include <string>
#include <vector>

namespace vesko::testing {

inline ScannableItem sampleItem(const std::string& path, std::int64_t size, bool isDirectory = true) {
    ScannableItem item;
    item.url = FileURL(path);
    item.size = size;
    item.isDirectory = isDirectory;
    item.enrichmentKey = EnrichmentKey::forURL(item.url);
    return item;
}

/// A snapshot that comes back from the cache as it is: whole seconds, no labels, sections titled by their
/// ids.
inline ScanCacheSnapshot sampleSnapshot() {
    CleanupGroup caches;
    caches.id = "cache.npm";
    caches.title = "npm";
    caches.icon = "shippingbox";
    caches.section = {"caches", "caches", 2};
    caches.providerID = {"cache"};
    caches.relevancePolicy = RelevancePolicy::alwaysRelevant;
    caches.subtitle = "2 itens";
    caches.baselineSafety = Safety::seguro;
    caches.baselineReason = "Volta a ser baixado quando for preciso.";
    caches.items = {sampleItem("/home/ana/.npm/_cacache", 4096),
                    sampleItem("/home/ana/a b/Ação \"1\"", 1, false)};
    CleanupGroup docker;
    docker.id = "docker.volumes";
    docker.title = "Volumes";
    docker.icon = "cube";
    docker.section = {"development", "development", 3};
    docker.providerID = {"docker"};
    docker.subtitle = "1 item";
    docker.baselineSafety = Safety::risco;
    ScannableItem volume = sampleItem("/var/lib/docker/volumes/data", 5'000'000'000);
    volume.enrichmentKey = {"docker:volume:data"};
    docker.items = {volume};
    ScanCacheSnapshot snapshot;
    snapshot.scanDate = dateFromUnixSeconds(1'795'256'100);
    snapshot.foundTotalBytes = 5'000'004'097;
    snapshot.groups = {caches, docker};
    snapshot.lastCleanupDate = dateFromUnixSeconds(1'795'000'000);
    snapshot.lastCleanupFreedBytes = 123'456'789;
    snapshot.probeFingerprints["cache.npm"].pathMtimes["/home/ana/.npm"] = dateFromUnixSeconds(1'700'000'000);
    snapshot.probeFingerprints["docker.volumes"] = {};
    return snapshot;
}

/// As a large home gives it: `count` items in ten groups.
inline ScanCacheSnapshot largeSnapshot(std::size_t count) {
    ScanCacheSnapshot snapshot = sampleSnapshot();
    const CleanupGroup pattern = snapshot.groups[0];
    snapshot.groups.clear();
    for (std::size_t group = 0; group < 10; ++group) {
        std::vector<ScannableItem> items;
        for (std::size_t index = group; index < count; index += 10)
            items.push_back(sampleItem("/home/ana/Projects/customer-" + std::to_string(index % 97) +
                                           "/service-" + std::to_string(index) + "/node_modules",
                                       static_cast<std::int64_t>(1'000'000 + index)));
        snapshot.groups.push_back(pattern);
        snapshot.groups.back().id = "project." + std::to_string(group);
        snapshot.groups.back().items = ItemList(std::move(items));
    }
    return snapshot;
}

} // namespace vesko::testing
