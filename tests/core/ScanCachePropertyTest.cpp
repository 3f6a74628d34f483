#include "core/ScanCacheFile.h"
#include "support/ScanCacheSamples.h"
#include "support/Utf8.h"
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace vesko {
namespace {

using Numbers = std::vector<std::uint32_t>;

ScannableItem itemFrom(const Numbers& numbers, std::int64_t size) {
    ScannableItem item = testing::sampleItem("/" + testing::utf8From(numbers), size);
    item.isDirectory = size % 2 == 0;
    return item;
}

RC_GTEST_PROP(ScanCacheProperty, ASnapshotComesBackWhole,
              (const std::vector<std::pair<Numbers, std::int32_t>>& entries, const Numbers& title,
               std::int32_t seconds, bool cleaned, std::int64_t freed,
               const std::map<Numbers, std::int32_t>& dates)) {
    ScanCacheSnapshot snapshot = testing::sampleSnapshot();
    std::vector<ScannableItem> items;
    for (const auto& [numbers, size] : entries) items.push_back(itemFrom(numbers, size));
    snapshot.groups[0].items = ItemList(items);
    snapshot.groups[1].title = testing::utf8From(title);
    snapshot.groups[1].baselineReason = testing::utf8From(title);
    snapshot.scanDate = dateFromUnixSeconds(seconds);
    snapshot.lastCleanupFreedBytes.reset();
    if (cleaned) snapshot.lastCleanupFreedBytes = freed;
    for (const auto& [path, date] : dates)
        snapshot.probeFingerprints["probe"].pathMtimes[testing::utf8From(path)] = dateFromUnixSeconds(date);
    RC_ASSERT(ScanCacheFile::decode(ScanCacheFile::encode(snapshot, "en"), "en") == snapshot);
}

RC_GTEST_PROP(ScanCacheProperty, NoPathCostsMoreThanItsEntry, (const std::string& bytes)) {
    ScanCacheSnapshot snapshot = testing::sampleSnapshot();
    snapshot.groups[0].items = {testing::sampleItem("/kept", 1), testing::sampleItem("/" + bytes, 2)};
    const auto loaded = ScanCacheFile::decode(ScanCacheFile::encode(snapshot, "en"), "en");
    RC_ASSERT(loaded.has_value());
    RC_ASSERT(loaded->groups[0].items[0].url == FileURL("/kept"));
}

} // namespace
} // namespace vesko
