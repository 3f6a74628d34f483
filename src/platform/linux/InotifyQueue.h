#pragma once
#include "platform/posix/FolderHandle.h"
#include <cstddef>
#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <string_view>
#include <system_error>

namespace vesko {

/// One event of inotify(7).
struct InotifyEvent {
    int watch = -1;
    std::uint32_t mask = 0;
    std::string_view name; ///< of the entry that it is about; empty when it is about the folder itself
};

/// The system's queue of changes in watched folders. One thread.
class InotifyQueue {
public:
    /// Without a queue (the system allows a person only so many) nothing can be watched.
    InotifyQueue();
    ~InotifyQueue();
    InotifyQueue(const InotifyQueue&) = delete;
    InotifyQueue& operator=(const InotifyQueue&) = delete;

    /// For waiting; negative without a queue.
    int descriptor() const noexcept { return descriptor_; }
    /// Watches this very folder, whatever its path has become. A folder that is watched already keeps its
    /// number.
    std::expected<int, std::error_code> watch(const FolderHandle& folder);
    void forget(int watch) noexcept;
    /// Hands over what lies in the queue, a bounded part of it at once; whether there was anything.
    bool read(const std::function<void(const InotifyEvent&)>& take);

private:
    static constexpr std::size_t bufferBytes = std::size_t{64} * 1024;

    int descriptor_;
    std::unique_ptr<char[]> buffer_;
};

/// How many watches a program should take at most: three quarters of what the system allows a person, since
/// her other programs draw on the same number.
std::size_t fairShareOfWatches();

} // namespace vesko
