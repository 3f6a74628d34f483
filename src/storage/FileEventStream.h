#pragma once
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace vesko {

/// The platform's report of changes below some folders, by folder. Ends when it is destroyed; no callback
/// begins after that.
class FileEventStream {
public:
    virtual ~FileEventStream() = default;
};

/// Absolute paths of folders in which something changed, possibly repeated. Called on a thread of the
/// stream's own.
using FileEvents = std::function<void(const std::vector<std::string>&)>;

/// Makes and starts a stream for changes below `paths` from now on, collected for `latency` seconds; the
/// first change of a quiet spell is told at once. Null when the platform refuses.
using FileEventStreamMaker = std::function<std::unique_ptr<FileEventStream>(
    const std::vector<std::string>& paths, double latency, FileEvents onEvents)>;

} // namespace vesko
