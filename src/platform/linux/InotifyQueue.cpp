#include "InotifyQueue.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <limits>
#include <string>
#include <sys/inotify.h>
#include <unistd.h>

namespace vesko {
namespace {

/// Whatever changes what a folder holds or who may see it. Entries that are deleted and still open count no
/// longer. Of what is written through mapped memory the system tells nothing.
constexpr std::uint32_t wanted = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_MODIFY |
                                 IN_CLOSE_WRITE | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR |
                                 IN_DONT_FOLLOW | IN_EXCL_UNLINK;

std::error_code lastError() noexcept { return {errno, std::system_category()}; }

} // namespace

InotifyQueue::InotifyQueue()
    : descriptor_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)), buffer_(new char[bufferBytes]) {}

InotifyQueue::~InotifyQueue() {
    if (descriptor_ >= 0) ::close(descriptor_);
}

/// The system takes a path only. The one through proc(5) leads to the open folder; the "." behind it lets the
/// link there be followed and no other.
std::expected<int, std::error_code> InotifyQueue::watch(const FolderHandle& folder) {
    if (descriptor_ < 0) return std::unexpected(std::make_error_code(std::errc::no_space_on_device));
    const std::string path = "/proc/self/fd/" + std::to_string(folder.descriptor()) + "/.";
    const int watch = ::inotify_add_watch(descriptor_, path.c_str(), wanted);
    if (watch < 0) return std::unexpected(lastError());
    return watch;
}

void InotifyQueue::forget(int watch) noexcept {
    if (descriptor_ >= 0) ::inotify_rm_watch(descriptor_, watch);
}

bool InotifyQueue::read(const std::function<void(const InotifyEvent&)>& take) {
    constexpr int mostReads = 64; // more than the queue holds by default
    bool found = false;
    for (int reads = 0; descriptor_ >= 0 && reads < mostReads; ++reads) {
        const ssize_t got = ::read(descriptor_, buffer_.get(), bufferBytes);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) break;
        found = true;
        for (ssize_t at = 0; at < got;) {
            inotify_event head{};
            std::memcpy(&head, buffer_.get() + at, sizeof head);
            const char* name = buffer_.get() + at + sizeof head;
            take({head.wd, head.mask, head.len > 0 ? std::string_view(name) : std::string_view()});
            at += static_cast<ssize_t>(sizeof head + head.len);
        }
    }
    return found;
}

std::size_t fairShareOfWatches() {
    std::ifstream file("/proc/sys/fs/inotify/max_user_watches");
    std::size_t allowed = 0;
    if (!(file >> allowed)) return std::numeric_limits<std::size_t>::max();
    return allowed - allowed / 4;
}

} // namespace vesko
