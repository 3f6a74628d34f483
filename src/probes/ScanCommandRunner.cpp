#include "probes/ScanCommandRunner.h"

#include "probes/SystemCommandRunner.h"
#include "search/SearchCommand.h"
#include <utility>

namespace vesko {

ScanCommandRunner::ScanCommandRunner()
    : ScanCommandRunner(std::make_shared<const SystemCommandRunner>(), toolStandIns()) {}

ScanCommandRunner::ScanCommandRunner(std::shared_ptr<const CommandRunning> tools,
                                     std::vector<ToolStandIn> table)
    : tools_(std::move(tools)), table_(std::move(table)) {}

CommandResult ScanCommandRunner::run(const std::string& executable,
                                     const std::vector<std::string>& arguments) const {
    if (executable != "/usr/bin/mdfind" || !isStoodInFor(executable, table_))
        return tools_->run(executable, arguments);
    SearchReply reply = replyToSearch(search_, arguments);
    return {reply.status, std::move(reply.output)};
}

} // namespace vesko
