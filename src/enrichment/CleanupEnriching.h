#pragma once
#include "concurrency/AsyncStream.h"
#include "core/CleanupGroup.h"
#include "enrichment/EnrichmentPatch.h"
#include <vector>

namespace vesko {

/// Asks a language model for names and reasons. Called on the main thread; gives the answers one by one as
/// they come. The stream ends with the run; dropping it, or cancelling the task that reads it, ends the run.
/// What fails inside shows as fewer answers.
class CleanupEnriching {
public:
    virtual ~CleanupEnriching() = default;
    virtual AsyncStream<EnrichmentPatch> enrich(std::vector<CleanupGroup> groups) = 0;
};

} // namespace vesko
