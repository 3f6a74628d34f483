#include "probes/SystemCommandRunner.h"

#include "base/Paths.h"
#include "probes/RunTool.h"
#include <utility>

namespace vesko {

CommandResult SystemCommandRunner::run(const std::string& executable,
                                       const std::vector<std::string>& arguments) const {
    std::optional<ChildResult> child = runTool(executable, arguments);
    if (!child) return {-1, ""};
    if (!isUtf8(child->standardOutput)) return {child->status, ""};
    return {child->status, std::move(child->standardOutput)};
}

} // namespace vesko
