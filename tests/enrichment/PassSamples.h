#pragma once
#include "core/ProbeCatalog.h"
#include "core/ScanRecords.h"
#include "enrichment/CleanupReviewService.h"
#include "enrichment/ModelAnswers.h"
#include "support/builders.h"
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The lists that both passes are tested with.
namespace vesko::testing {

inline constexpr std::int64_t hundredMebibytes = 104'857'600;
inline const Date today = dateFromUnixSeconds(1'795'256'100);

inline CleanupGroup discovered(const std::string& id, std::vector<ScannableItem> items,
                               Safety safety = Safety::revisar) {
    CleanupGroup made = group(id, std::move(items));
    made.providerID = {"discover"};
    made.baselineSafety = safety;
    return made;
}

inline ScanReviewCandidate candidate(const std::string& path, std::int64_t size = 1000) {
    const FileURL url(path);
    return {url, size, std::string(url.lastPathComponent()), true, std::nullopt};
}

inline std::vector<PendingReviewItem> collect(const std::vector<CleanupGroup>& groups,
                                              std::vector<ScanReviewCandidate> offered = {}) {
    return CleanupReviewService::collectPendingReviewItems(groups, std::move(offered), today);
}

inline const GroupMetadata& catalog(std::string_view id) { return probeMetadataByID().find(id)->second; }

} // namespace vesko::testing
