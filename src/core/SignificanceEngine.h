#pragma once
#include "base/Date.h"
#include "core/CleanupGroup.h"
#include "core/GroupMetadata.h"
#include "core/ScanRecords.h"
#include <string>
#include <vector>

namespace vesko {

/// Turns the raw groups of a scan into what is shown: what is covered already goes, project groups merge into
/// one, empty groups go, the largest stands first. Pure: may run on a worker over a snapshot. Near-linear in
/// the items.
struct SignificanceEngine {
    /// `dates` gives the report its date.
    ScanReport evaluate(std::vector<CleanupGroup> groups, std::vector<std::string> errors,
                        const DateSource& dates = systemDates()) const;
};

/// Takes from discovery groups every item that equals, lies in or contains an item of another kind of group.
std::vector<CleanupGroup> removeCoveredDiscoveries(std::vector<CleanupGroup> groups);
/// Folds the groups of project artifacts into one "project.artifacts" group at the end.
std::vector<CleanupGroup> consolidateProjectArtifacts(std::vector<CleanupGroup> groups);
/// Sum over all items of all groups; a sum beyond 63 bits stops the process with a message.
std::int64_t totalBytes(const std::vector<CleanupGroup>& groups);

/// The merged group's description, id "project.artifacts".
const GroupMetadata& projectArtifactsMetadata();

} // namespace vesko
