#pragma once
#include "concurrency/SerialQueue.h"
#include "storage/FileEventStream.h"
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace vesko {

/// Watches folders and tells which of them changed; knows nothing of what they mean. `start` and `stop` only
/// ask and return at once; what they ask for happens in order on a serial queue of the watcher's own, and
/// `onChange` is called there too, so its receiver hops to its own thread.
///
/// Owned by a shared pointer; destroying it ends the watching directly.
class FileSystemWatcher : public std::enable_shared_from_this<FileSystemWatcher> {
public:
    using OnChange = std::function<void(const std::set<std::string>&)>;

    /// Starts nothing. `workers` outlive the watcher. `latency` in seconds.
    FileSystemWatcher(Executor& workers, std::vector<std::string> paths, double latency,
                      FileEventStreamMaker makeStream, OnChange onChange);
    ~FileSystemWatcher();
    FileSystemWatcher(const FileSystemWatcher&) = delete;
    FileSystemWatcher& operator=(const FileSystemWatcher&) = delete;

    /// Does nothing without paths and while it watches already. A stopped watcher can be started again.
    void start();
    void stop();

private:
    void open();
    void take(const std::vector<std::string>& changed);

    std::vector<std::string> paths_;
    double latency_;
    FileEventStreamMaker makeStream_;
    OnChange onChange_;
    SerialQueue queue_;
    std::unique_ptr<FileEventStream> stream_; ///< touched on the queue alone, and at the end
};

} // namespace vesko
