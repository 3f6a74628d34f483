#pragma once
#include <cstddef>
#include <string>

namespace vesko::bench {

/// Makes a developer's home of about so many entries in `folder` unless it was made there before: 80 projects
/// (packages, targets, build folders, sources) and caches that several kinds of places share. The same at
/// every run. Gives the home's path.
std::string sampleHome(const std::string& folder, std::size_t entries);

} // namespace vesko::bench
