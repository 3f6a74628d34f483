#include "enrichment/EnrichmentCacheFile.h"
#include "support/Utf8.h"
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace vesko {
namespace {

using Numbers = std::vector<std::uint32_t>;

RC_GTEST_PROP(EnrichmentCacheProperty, EntriesComeBackWhole,
              (const std::map<Numbers, std::tuple<Numbers, std::uint8_t, std::int32_t>>& described)) {
    EnrichmentEntries entries;
    for (const auto& [key, description] : described) {
        const auto& [name, choice, microseconds] = description;
        Enrichment entry;
        entry.friendlyName = testing::utf8From(name);
        entry.reason = entry.friendlyName + ".";
        entry.safety = static_cast<Safety>(choice % 3);
        entry.source = choice % 2 == 0 ? EnrichmentSource::model : EnrichmentSource::heuristic;
        if (choice % 5 == 0) entry.kind = entry.friendlyName;
        if (choice % 2 == 0) entry.modelVersion = "v";
        entry.updatedAt = dateFromUnixSeconds(1'795'256'100) + std::chrono::microseconds(microseconds);
        entries[{testing::utf8From(key)}] = entry;
    }
    RC_ASSERT(EnrichmentCacheFile::decode(EnrichmentCacheFile::encode(entries, "en"), "en", "v") == entries);
}

} // namespace
} // namespace vesko
