#pragma once
#include "core/CommandRunning.h"
#include "probes/ToolTable.h"
#include "search/TreeSearch.h"
#include <memory>
#include <string>
#include <vector>

namespace vesko {

/// The runner of one scan. Where the system has no search index, its command `mdfind` is answered in the
/// process, with one walk of a folder for all searches in it: a home is read once, however many probes ask.
/// The answers are those of the program that stands in for `mdfind`. Every other command goes on to the
/// runner of the real tools. Keeps what it has read as long as it lives, so each scan has one of its own.
class ScanCommandRunner final : public CommandRunning {
public:
    ScanCommandRunner();
    /// For tests: another runner behind this one and another table of tools.
    ScanCommandRunner(std::shared_ptr<const CommandRunning> tools, std::vector<ToolStandIn> table);

    CommandResult run(const std::string& executable,
                      const std::vector<std::string>& arguments) const override;

private:
    std::shared_ptr<const CommandRunning> tools_;
    std::vector<ToolStandIn> table_;
    TreeSearch search_;
};

} // namespace vesko
