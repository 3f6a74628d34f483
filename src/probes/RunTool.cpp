#include "probes/RunTool.h"

#include "probes/ToolTable.h"

namespace vesko {

std::optional<ChildResult> runTool(const std::string& path, const std::vector<std::string>& arguments) {
    return runChild(executableBehind(path), arguments);
}

} // namespace vesko
