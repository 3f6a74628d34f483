#pragma once
#include "core/CleanupGroup.h"
#include "core/GroupMetadata.h"
#include "core/ScanProbe.h"
#include "core/ScanRecords.h"
#include <string>
#include <string_view>
#include <vector>

namespace vesko {

/// The title of a probe in the current language; without a text in the catalog the part of the id behind its
/// last dot, with a blank for each "_".
std::string probeTitle(std::string_view id);
/// What deleting means, in the current language; without a text the general advice to look first.
std::string probeReason(std::string_view id);
/// The title of a band; an unknown id reads as the system's band.
std::string sectionTitle(std::string_view id);
/// The count text of a group with this id and so many items.
std::string groupSubtitle(std::string_view groupID, std::int64_t itemCount);

/// A group of these items, largest first; equal sizes keep their order.
CleanupGroup makeGroup(const GroupMetadata& metadata, std::vector<ScannableItem> items);
/// A probe's answer: items without a size are left out, and without any item left there is no group.
ProbeResult makeResult(const GroupMetadata& metadata, std::vector<ScannableItem> items,
                       std::vector<std::string> errors = {});
/// The same group with other items: nothing else changes, the subtitle with its count included.
CleanupGroup withItems(const CleanupGroup& group, ItemList items);

/// What a discovery group offers to the review pass; any other group offers nothing. Reads each item's
/// modification date from the disk: blocks.
std::vector<ScanReviewCandidate> reviewCandidates(const CleanupGroup& group);

} // namespace vesko
