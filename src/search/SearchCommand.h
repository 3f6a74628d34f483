#pragma once
#include "search/TreeSearch.h"
#include <string>
#include <vector>

namespace vesko {

/// What a search gives to whoever ran it as a command.
struct SearchReply {
    static constexpr int answered = 0; ///< an empty answer included
    static constexpr int unsearchable = 1;
    static constexpr int notUnderstood = 2;

    int status = answered;
    std::string output;  ///< for standard output: one absolute path a line, UTF-8
    std::string message; ///< for standard error: why the status is not 0
};

/// Carries out `mdfind -onlyin FOLDER QUERY`, the one form of that command that is understood: three
/// arguments, an absolute folder, a query that searchQueryFromText reads. A search that was cancelled answers
/// nothing and is no failure: whoever cancelled has no use for either. Blocks; any thread.
SearchReply replyToSearch(const TreeSearch& search, const std::vector<std::string>& arguments);

} // namespace vesko
