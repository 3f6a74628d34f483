#pragma once
#include "background/SilentNotificationService.h"
#include "base/Date.h"
#include "enrichment/UnavailableEnrichment.h"
#include "enrichment/UnavailableReview.h"
#include "orchestration/CleanupViewModel.h"
#include "support/MemoryUserDefaults.h"
#include <memory>
#include <string>
#include <utility>

namespace vesko::testing {

/// What a view model of the cleanup stands on: its files in the folder `state`, with entries of that version
/// of the model, settings that live in memory, nothing that asks a model, and no notifications. The rest is
/// as the parts have it by default.
inline CleanupViewModelParts storedParts(const TaskContext& tasks, const FileURL& state,
                                         std::string modelVersion, const DateSource& dates = systemDates()) {
    CleanupViewModelParts parts;
    parts.tasks = tasks;
    parts.scanCacheStore = std::make_shared<ScanCacheStore>(state.appending("scan-cache.json"));
    parts.enrichmentStore = std::make_shared<EnrichmentStore>(state.appending("enrichment-cache.json"),
                                                              std::move(modelVersion), tasks, dates);
    parts.demotedPathsStore = std::make_shared<DemotedPathsStore>(state.appending("demoted-paths.json"));
    parts.notificationService = std::make_shared<SilentNotificationService>();
    parts.defaults = std::make_shared<MemoryUserDefaults>();
    parts.enricher = std::make_shared<UnavailableEnrichment>();
    parts.reviewer = std::make_shared<UnavailableReview>();
    return parts;
}

} // namespace vesko::testing
