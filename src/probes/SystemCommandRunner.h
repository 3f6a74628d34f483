#pragma once
#include "core/CommandRunning.h"

namespace vesko {

/// Runs the real tools. A child that cannot be started gives (-1, ""); output that is no UTF-8 gives the
/// child's status and ""; the end by a signal gives the signal's number. No time limit, no limit on the
/// output, and a child that fills its standard error blocks for good.
class SystemCommandRunner final : public CommandRunning {
public:
    CommandResult run(const std::string& executable,
                      const std::vector<std::string>& arguments) const override;
};

} // namespace vesko
