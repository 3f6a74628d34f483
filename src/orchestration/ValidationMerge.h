#pragma once
#include "core/CleanupGroup.h"
#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

namespace vesko {

/// The list after a validation scan: of `cached` what no probe that ran decides about, and all of `fresh`;
/// project artifacts folded into one group, no group without items, the largest first, equal ones in this
/// order. Pure: may run on a worker.
std::vector<CleanupGroup> mergeValidationGroups(const std::vector<CleanupGroup>& cached,
                                                const std::vector<CleanupGroup>& fresh,
                                                const std::unordered_set<std::string>& ranProbeIDs);
/// Sum of the sizes of all items of all groups.
std::int64_t validationTotalBytes(const std::vector<CleanupGroup>& groups);

} // namespace vesko
