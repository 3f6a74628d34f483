#pragma once
#include "core/GroupMetadata.h"
#include "probes/FixedPathProbe.h"
#include "probes/ProjectArtifactProbe.h"
#include "probes/ShallowScanProbe.h"
#include <array>
#include <string_view>
#include <vector>

namespace vesko {

/// The ids of the whole catalog, in the order in which a scan starts its probes.
extern const std::array<std::string_view, 44> catalogOrder;

/// The rows that are fixed paths, in catalog order. A row's provider follows from its id: "cache" for ids
/// that begin so, "fixed" for the others.
std::vector<FixedPathRow> fixedPathRows();

/// What the rows of all other kinds say of their groups, in catalog order.
std::vector<GroupMetadata> otherRowsMetadata();
/// One of these by its id; an id that is not among them stops the process with a message.
GroupMetadata rowMetadata(std::string_view id);

/// The rows about what projects hold, in catalog order.
std::vector<ProjectArtifactRow> projectArtifactRows();

/// The rows that list the folders of applications, in catalog order.
std::vector<ShallowScanRow> shallowScanRows();

} // namespace vesko
