#pragma once
#include "base/ChildProcess.h"
#include <optional>
#include <string>
#include <vector>

namespace vesko {

/// runChild for the tool that stands behind a fixed path on this system. Whoever starts a tool does it here.
std::optional<ChildResult> runTool(const std::string& path, const std::vector<std::string>& arguments);

} // namespace vesko
