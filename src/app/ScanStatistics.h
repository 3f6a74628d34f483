#pragma once
#include <string>

namespace vesko {

/// What this process has done on the disk since it began, as one line of JSON: {"event":"statistics", ...}.
/// For `measuring` and for `searching` each: `foldersRead` (readings of a folder from its beginning),
/// `foldersOpened` (handles; a folder that is found again is opened again), `entriesRead`, `readingCalls` and
/// `statusCalls` (getdents64(2) and statx(2) on Linux). `childrenStarted` counts child processes. Only walks
/// are counted, and calls that succeeded. Without a line's end.
std::string statisticsLine();

} // namespace vesko
