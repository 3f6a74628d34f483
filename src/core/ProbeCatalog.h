#pragma once
#include "core/GroupMetadata.h"
#include "core/ScanProbe.h"
#include "probes/FixedPathProbe.h"
#include <map>
#include <string>
#include <vector>

namespace vesko {

/// The probes over fixed paths, in catalog order.
std::vector<FixedPathProbe> fixedPathProbes();
/// Every probe that this build can run, afresh, in catalog order: the order in which a scan starts them.
ProbeList probeCatalog();

using MetadataByID = std::map<std::string, GroupMetadata, std::less<>>;
/// What each row of the catalog says of its group, whether or not this build has a probe for it, and
/// "project.artifacts", the group that the project rows merge into. Made once, kept for the whole program.
const MetadataByID& probeMetadataByID();
/// The same out of any rows. A repeated id stops the process with a message.
MetadataByID metadataByID(const std::vector<GroupMetadata>& rows);

} // namespace vesko
