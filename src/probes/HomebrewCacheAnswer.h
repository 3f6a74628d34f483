#pragma once
#include "base/FileURL.h"
#include <optional>
#include <string_view>

namespace vesko {

/// The folder that `brew --cache` names. What it prints is one path, however it looks: line ends and white
/// space go at both ends only. Nothing when it prints nothing, or a path that is not absolute: that would
/// name another folder with each working folder.
std::optional<FileURL> parseHomebrewCache(std::string_view output);

} // namespace vesko
