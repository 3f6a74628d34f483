#pragma once
#include "base/FileURL.h"
#include <cstdint>

namespace vesko {

/// The last resort of measuring: adds up the allocated bytes of all files below a folder, once for each hard
/// link, without hidden entries and without the inside of packages; a sum of nothing asks `du` with links
/// followed. A file gives its own allocated bytes, a link the link's own. What can't be read adds nothing.
/// Throws Cancelled when the current task is cancelled on the way. A sum beyond 63 bits stops the process
/// with a message. Blocks; any thread.
std::int64_t walkedSize(const FileURL& url);

} // namespace vesko
