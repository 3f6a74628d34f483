#pragma once
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace vesko {

/// The platform's report of changes below some folders, by folder. Ends when it is destroyed, which may
/// happen in a callback; none begins after that.
class FileEventStream {
public:
    virtual ~FileEventStream() = default;
};

/// Absolute paths of folders in which something changed, possibly repeated. A path whose folder is not the
/// place of the change itself means that anything below it may have changed: what was lost in a flood of
/// changes is told that way. Called on a thread of the stream's own.
using FileEvents = std::function<void(const std::vector<std::string>&)>;

/// Makes and starts a stream for changes below `paths` from now on, collected for `latency` seconds; the
/// first change of a quiet spell is told at once. Returns before all folders are looked at. Null when the
/// platform refuses.
using FileEventStreamMaker = std::function<std::unique_ptr<FileEventStream>(
    const std::vector<std::string>& paths, double latency, FileEvents onEvents)>;

/// The streams of this system. The platform layer implements it. A path that is itself a link is watched
/// where it leads to, and changes there are told below the path as given; links further down are not
/// followed.
FileEventStreamMaker platformFileEvents();

} // namespace vesko
