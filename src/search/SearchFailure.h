#pragma once

namespace vesko {

/// Why a search has no answer.
enum class SearchFailure {
    noFolder,   ///< there is no folder at the root, or it can't be read
    stopped,    ///< the token asked for it
    incomplete, ///< the system ran out of descriptors or memory, so that a part was left out
};

} // namespace vesko
