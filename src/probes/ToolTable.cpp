#include "probes/ToolTable.h"

#include "base/FileSystem.h"
#include <algorithm>

namespace vesko {
namespace {

/// The row that counts; null when something stands at the path itself.
const ToolStandIn* rowFor(const std::string& path, const std::vector<ToolStandIn>& table) {
    const auto row = std::ranges::find(table, path, &ToolStandIn::path);
    return row == table.end() || fileExists(FileURL(path)) ? nullptr : &*row;
}

} // namespace

std::string executableBehind(const std::string& path, const std::vector<ToolStandIn>& table) {
    if (const ToolStandIn* row = rowFor(path, table))
        for (const std::string& executable : row->executables)
            if (fileExists(FileURL(executable))) return executable;
    return path;
}

bool isStoodInFor(const std::string& path, const std::vector<ToolStandIn>& table) {
    return rowFor(path, table) != nullptr;
}

} // namespace vesko
