#include "storage/FileEventStream.h"

#include "CoreFoundation.h"
#include <CoreServices/CoreServices.h>
#include <atomic>
#include <cstdlib>
#include <dispatch/dispatch.h>
#include <mutex>
#include <string_view>
#include <type_traits>
#include <utility>

/// FSEvents (File System Events Programming Guide). It watches whole trees by itself and keeps what it could
/// not deliver in the paths that it tells, so the flags of single events are of no interest.
namespace vesko {
namespace {

struct ReleaseQueue {
    void operator()(dispatch_queue_t queue) const noexcept { dispatch_release(queue); }
};
using Queue = std::unique_ptr<std::remove_pointer_t<dispatch_queue_t>, ReleaseQueue>;

/// Lists of paths, and the first change of a quiet spell at once.
constexpr FSEventStreamCreateFlags flags =
    kFSEventStreamCreateFlagUseCFTypes | kFSEventStreamCreateFlagNoDefer;

std::string resolved(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> target(::realpath(path.c_str(), nullptr), &std::free);
    return target ? std::string(target.get()) : path;
}

bool liesAtOrBelow(std::string_view path, std::string_view root) {
    return path.starts_with(root) && (path.size() == root.size() || path[root.size()] == '/');
}

std::string text(CFTypeRef object) {
    if (!object || CFGetTypeID(object) != CFStringGetTypeID()) return {};
    const auto string = static_cast<CFStringRef>(object);
    const CFIndex longest = CFStringGetMaximumSizeOfFileSystemRepresentation(string);
    std::string bytes(static_cast<std::size_t>(longest), '\0');
    if (!CFStringGetFileSystemRepresentation(string, bytes.data(), longest)) return {};
    bytes.resize(bytes.find('\0') == std::string::npos ? bytes.size() : bytes.find('\0'));
    return bytes;
}

Owned<CFArrayRef> listOf(const std::vector<std::string>& paths) {
    std::vector<Owned<CFStringRef>> owned;
    std::vector<const void*> values;
    for (const std::string& path : paths) {
        // A path that is no text can't be watched.
        Owned<CFStringRef> string = stringOf(path);
        if (!string) continue;
        values.push_back(string.get());
        owned.push_back(std::move(string));
    }
    return Owned<CFArrayRef>(CFArrayCreate(kCFAllocatorDefault, values.data(),
                                           static_cast<CFIndex>(values.size()), &kCFTypeArrayCallBacks));
}

/// What callbacks touch. Counts its holders by itself, as the system's stream is one of them.
struct Receiver {
    struct Root {
        std::string real;
        std::string given;
    };

    void take(CFArrayRef events) {
        std::vector<std::string> changed;
        for (CFIndex i = 0; i < CFArrayGetCount(events); ++i)
            if (std::string path = text(CFArrayGetValueAtIndex(events, i)); !path.empty())
                changed.push_back(asGiven(std::move(path)));
        if (changed.empty()) return;
        const std::lock_guard lock(mutex);
        if (!hasEnded) onEvents(changed);
    }

    /// The system tells a path without links, of a folder often with a "/" at its end; the receiver knows it
    /// below the root as given, and without.
    std::string asGiven(std::string path) const {
        if (path.size() > 1 && path.ends_with('/')) path.pop_back();
        for (const Root& root : roots)
            if (root.real != root.given && liesAtOrBelow(path, root.real))
                return root.given + path.substr(root.real.size());
        return path;
    }

    std::vector<Root> roots;
    FileEvents onEvents;
    std::recursive_mutex mutex; ///< held while the callback runs, which may destroy the stream
    bool hasEnded = false;
    mutable std::atomic<int> holders = 0;
};

const void* hold(const void* info) {
    ++static_cast<const Receiver*>(info)->holders;
    return info;
}
void letGo(const void* info) {
    const auto* receiver = static_cast<const Receiver*>(info);
    if (--receiver->holders == 0) delete receiver;
}
struct LetGo {
    void operator()(const Receiver* receiver) const noexcept { letGo(receiver); }
};
using HeldReceiver = std::unique_ptr<Receiver, LetGo>;
HeldReceiver held(Receiver* receiver) {
    hold(receiver);
    return HeldReceiver(receiver);
}

void receive(ConstFSEventStreamRef /*stream*/, void* info, std::size_t /*count*/, void* paths,
             const FSEventStreamEventFlags* /*flags*/, const FSEventStreamEventId* /*ids*/) {
    // Kept past the end of the stream, which may come in the callback.
    const HeldReceiver receiver = held(static_cast<Receiver*>(info));
    if (!paths || CFGetTypeID(paths) != CFArrayGetTypeID()) return;
    receiver->take(static_cast<CFArrayRef>(paths));
}

class FSEventsStream final : public FileEventStream {
public:
    FSEventsStream(HeldReceiver receiver, Queue queue, FSEventStreamRef stream)
        : receiver_(std::move(receiver)), queue_(std::move(queue)), stream_(stream) {}
    FSEventsStream(const FSEventsStream&) = delete;
    FSEventsStream& operator=(const FSEventsStream&) = delete;
    ~FSEventsStream() override {
        {
            const std::lock_guard lock(receiver_->mutex);
            receiver_->hasEnded = true;
        }
        FSEventStreamStop(stream_);
        FSEventStreamInvalidate(stream_);
        FSEventStreamRelease(stream_);
        // A callback that the queue had begun may be about to take its hold.
        dispatch_async_f(queue_.get(), receiver_.release(), [](void* receiver) { letGo(receiver); });
    }

private:
    HeldReceiver receiver_;
    Queue queue_;
    FSEventStreamRef stream_;
};

std::unique_ptr<FileEventStream> makeStream(const std::vector<std::string>& paths, double latency,
                                            FileEvents onEvents) {
    HeldReceiver receiver = held(new Receiver);
    receiver->onEvents = std::move(onEvents);
    std::vector<std::string> watched;
    for (const std::string& path : paths) {
        watched.push_back(resolved(path));
        receiver->roots.push_back({watched.back(), path});
    }
    const Owned<CFArrayRef> list = listOf(watched);
    Queue queue(dispatch_queue_create(
        "com.vesko.fswatcher",
        dispatch_queue_attr_make_with_qos_class(DISPATCH_QUEUE_SERIAL, QOS_CLASS_UTILITY, 0)));
    if (!list || CFArrayGetCount(list.get()) == 0 || !queue) return nullptr;
    FSEventStreamContext context{0, receiver.get(), hold, letGo, nullptr};
    FSEventStreamRef stream = FSEventStreamCreate(kCFAllocatorDefault, receive, &context, list.get(),
                                                  kFSEventStreamEventIdSinceNow, latency, flags);
    if (!stream) return nullptr;
    FSEventStreamSetDispatchQueue(stream, queue.get());
    if (!FSEventStreamStart(stream)) {
        FSEventStreamInvalidate(stream);
        FSEventStreamRelease(stream);
        return nullptr;
    }
    return std::make_unique<FSEventsStream>(std::move(receiver), std::move(queue), stream);
}

} // namespace

FileEventStreamMaker platformFileEvents() { return makeStream; }

} // namespace vesko
