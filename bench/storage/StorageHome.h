#pragma once
#include <cstddef>
#include <string>

namespace vesko::bench {

/// Makes a home of about so many entries in `folder` unless it was made there before, all of them in folders
/// that the dashboard measures. The same at every run. Gives the home's path.
std::string storageHome(const std::string& folder, std::size_t entries);

} // namespace vesko::bench
