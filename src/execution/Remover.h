#pragma once
#include "base/FileURL.h"
#include "concurrency/StopToken.h"
#include "execution/RemovalFailure.h"
#include <cstdint>
#include <functional>
#include <optional>

namespace vesko {

/// Told while something is removed, on the removing thread, at least five times a second as long as the
/// system answers, and once at the end: the bytes given back so far (a hard link gives something back only
/// when it is the last one) and the entries gone so far.
using RemovalProgress = std::function<void(std::int64_t bytesFreed, std::int64_t entriesRemoved)>;

/// Removes what stands at an absolute path, for good, with everything in it. The only place in the program
/// that takes away what belongs to the person. Blocks; any thread. The platform layer implements it.
///
/// - A link is removed as the link, also when the path is written with a trailing "/" or "/.".
/// - The way to the item may not lead through links, so that a folder swapped for one since the scan leads
///   nowhere; the home folder itself may be reached through one.
/// - Nothing mounted inside is entered. No link inside is followed.
/// - An entry that can't be removed stays, with the folders above it; all the rest goes, and the first such
///   entry is the failure. What vanishes meanwhile is no failure; an item that is not there at all is.
/// - A folder that another program keeps filling is left after a few passes.
/// - After a stop the rest stays, and the failure's code is std::errc::operation_canceled.
///
/// Nothing means that all of it is gone.
std::optional<RemovalFailure> removeForGood(const FileURL& url, const RemovalProgress& progress = {},
                                            const StopToken& stop = {});

} // namespace vesko
