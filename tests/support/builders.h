#pragma once
#include "core/CleanupGroup.h"
#include "core/GroupMetadata.h"
#include "core/ScannableItem.h"
#include <string>
#include <utility>
#include <vector>

namespace vesko::testing {

/// An item whose key is the default one.
inline ScannableItem item(const std::string& path, std::int64_t size, bool isDirectory = true) {
    ScannableItem made;
    made.url = FileURL(path);
    made.size = size;
    made.isDirectory = isDirectory;
    made.enrichmentKey = EnrichmentKey::forURL(made.url);
    return made;
}

inline GroupMetadata metadata(const std::string& id, const std::string& provider = "fixed") {
    GroupMetadata made;
    made.id = id;
    made.icon = "shippingbox";
    made.section = sections::caches();
    made.providerID = {provider};
    return made;
}

/// A group with plain texts, its items as given.
inline CleanupGroup group(const std::string& id, std::vector<ScannableItem> items = {}) {
    CleanupGroup made;
    made.id = id;
    made.title = "title of " + id;
    made.icon = "shippingbox";
    made.section = sections::caches();
    made.providerID = {"fixed"};
    made.subtitle = "subtitle of " + id;
    made.items = ItemList(std::move(items));
    made.baselineReason = "reason of " + id;
    return made;
}

inline std::vector<std::string> paths(const ItemList& items) {
    std::vector<std::string> list;
    for (const ScannableItem& each : items) list.push_back(each.url.path());
    return list;
}

inline std::vector<std::string> ids(const std::vector<CleanupGroup>& groups) {
    std::vector<std::string> list;
    for (const CleanupGroup& each : groups) list.push_back(each.id);
    return list;
}

} // namespace vesko::testing
