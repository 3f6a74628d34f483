#include "storage/FileSystemWatcher.h"

#include <utility>

namespace vesko {

FileSystemWatcher::FileSystemWatcher(Executor& workers, std::vector<std::string> paths, double latency,
                                     FileEventStreamMaker makeStream, OnChange onChange)
    : paths_(std::move(paths)), latency_(latency), makeStream_(std::move(makeStream)),
      onChange_(std::move(onChange)), queue_(workers) {}

FileSystemWatcher::~FileSystemWatcher() = default;

void FileSystemWatcher::start() {
    queue_.post([weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->open();
    });
}

void FileSystemWatcher::stop() {
    queue_.post([weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->stream_.reset();
    });
}

void FileSystemWatcher::open() {
    if (stream_ || paths_.empty()) return;
    // The stream tells on a thread of its own, also while it is still being made.
    stream_ =
        makeStream_(paths_, latency_, [weak = weak_from_this()](const std::vector<std::string>& changed) {
            const auto self = weak.lock();
            if (!self) return;
            self->queue_.post([weak, changed] {
                if (const auto alive = weak.lock()) alive->take(changed);
            });
        });
}

void FileSystemWatcher::take(const std::vector<std::string>& changed) {
    if (!stream_ || changed.empty()) return;
    onChange_(std::set<std::string>(changed.begin(), changed.end()));
}

} // namespace vesko
