#include "enrichment/EnrichmentPolicy.h"
#include <gtest/gtest.h>

namespace vesko {
namespace {

CleanupGroup group(const std::string& provider, std::vector<std::string> keys) {
    CleanupGroup made;
    made.providerID = {provider};
    std::vector<ScannableItem> items;
    for (const std::string& key : keys) {
        ScannableItem item;
        item.enrichmentKey = {key};
        items.push_back(item);
    }
    made.items = ItemList(items);
    return made;
}

TEST(EnrichmentPolicy, OnlyDiscoveredItemsGoToTheModel) {
    EXPECT_EQ(modelEnrichableKeys({group("cache", {"bundle:a"}), group("discover", {"url:/b", "url:/c"}),
                                   group("Discover", {"url:/d"}), group("discover", {"url:/b", "url:/e"}),
                                   group("discovery", {"url:/f"})}),
              (std::unordered_set<EnrichmentKey>{{"url:/b"}, {"url:/c"}, {"url:/e"}}));
}

TEST(EnrichmentPolicy, WithoutGroupsNothingGoesToTheModel) { EXPECT_TRUE(modelEnrichableKeys({}).empty()); }

} // namespace
} // namespace vesko
