#pragma once
#include "core/CleanupGroup.h"
#include "core/EnrichmentKey.h"
#include <unordered_set>
#include <vector>

namespace vesko {

/// The keys that are worth a question to the language model: those of discovered items. Everything else is
/// named by its probe and never goes to the model.
std::unordered_set<EnrichmentKey> modelEnrichableKeys(const std::vector<CleanupGroup>& groups);

} // namespace vesko
