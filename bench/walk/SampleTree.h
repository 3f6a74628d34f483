#pragma once
#include <cstddef>
#include <string>

namespace vesko::bench {

/// Makes a tree of about so many entries in `folder` unless it was made there before: like a developer's
/// home, some fourteen files to a folder, up to 20 levels, a few hard links and links; the same at every run.
/// Gives the tree's path.
std::string sampleTree(const std::string& folder, std::size_t entries);

} // namespace vesko::bench
