#pragma once
#include "base/ChildProcess.h"
#include "base/FileURL.h"
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vesko {

/// What `du -sk` says of the path (`du -skL` with `followLinks`), in bytes. 0 when there is no such program
/// or its output can't be read. Its exit status does not count: where it could not read a part it still gives
/// the total of the rest. A single file's figure is worked out without a process where that is certain to be
/// the same number. Blocks; any thread.
std::int64_t duSize(const FileURL& url, bool followLinks);

/// Starts a child; what runTool is.
using ChildRunning = std::function<std::optional<ChildResult>(const std::string& executable,
                                                              const std::vector<std::string>& arguments)>;
/// The figure of the program alone, through the given way to start it.
std::int64_t duProgramSize(const FileURL& url, bool followLinks, const ChildRunning& run);

/// The amount that the output of `du -k` begins with, in bytes: the first word of the first line that is not
/// empty, a decimal number of KiB. 0 when there is none or the output is no UTF-8. Read the same in every
/// locale. An amount beyond 63 bits stops the process with a message.
std::int64_t bytesFromDuOutput(std::string_view output);

} // namespace vesko
