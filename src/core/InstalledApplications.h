#pragma once
#include "base/FileURL.h"
#include <string>
#include <unordered_set>
#include <vector>

namespace vesko {

/// "/Applications" and the folder "Applications" in the process's own home.
std::vector<FileURL> applicationRoots();

/// The bundle identifiers of the ".app" folders that lie directly in the roots; hidden entries and
/// applications in folders further down are not seen, a root that can't be listed adds nothing. Blocks; any
/// thread.
std::unordered_set<std::string> installedBundleIDs(const std::vector<FileURL>& roots = applicationRoots());

} // namespace vesko
