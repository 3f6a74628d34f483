#include "platform/macos/FakeFileEvents.h"

#include "platform/macos/FakeCoreFoundation.h"
#include <atomic>
#include <cstdlib>
#include <memory>

using vesko::testing::FakeFileEvents;
using vesko::testing::fakeFileEvents;

/// Holds its receiver until it is gone itself, and is gone once it is released and no event of it waits.
struct __FSEventStream {
    FSEventStreamCallback callback = nullptr;
    FSEventStreamContext context{};
    dispatch_queue_t queue = nullptr;
    std::atomic<bool> isValid{true};
    std::atomic<int> holders{1};
};

namespace {

/// Lives until it is released and nothing waits on it.
struct Queue : dispatch_queue_s {
    std::atomic<int> holders{1};
};
struct QueueAttributes : dispatch_queue_attr_s {
    dispatch_qos_class_t qosClass{};
};
Queue* queueOf(dispatch_object_t object) {
    return static_cast<Queue*>(static_cast<dispatch_queue_t>(object));
}

std::unique_ptr<FakeFileEvents>& current() {
    static auto fake = std::make_unique<FakeFileEvents>();
    return fake;
}

FSEventStreamRef running = nullptr;

void note(const std::string& call) { fakeFileEvents().calls.push_back(call); }

void release(dispatch_queue_t object) {
    Queue* queue = queueOf(object);
    if (--queue->holders > 0) return;
    --fakeFileEvents().liveQueues;
    delete queue;
}

void release(FSEventStreamRef stream) {
    if (--stream->holders > 0) return;
    if (stream->context.release) stream->context.release(stream->context.info);
    if (stream->queue) release(stream->queue);
    if (running == stream) running = nullptr;
    --fakeFileEvents().liveStreams;
    delete stream;
}

void enqueue(dispatch_queue_t queue, std::function<void()> work) {
    ++queueOf(queue)->holders;
    const std::lock_guard lock(fakeFileEvents().mutex);
    fakeFileEvents().waiting.push_back([queue, work = std::move(work)] {
        work();
        release(queue);
    });
}

} // namespace

namespace vesko::testing {

FakeFileEvents& fakeFileEvents() { return *current(); }
void resetFakeFileEvents() {
    running = nullptr;
    current() = std::make_unique<FakeFileEvents>();
}

void FakeFileEvents::deliver(const std::vector<std::string>& changed) { deliverObject(makeList(changed)); }

void FakeFileEvents::deliverObject(CFTypeRef something) {
    if (!running || !running->queue) {
        CFRelease(something);
        return;
    }
    FSEventStreamRef stream = running;
    ++stream->holders;
    enqueue(stream->queue, [this, stream, something] {
        if (stream->isValid) {
            if (beforeCallback) beforeCallback();
            const std::vector<FSEventStreamEventFlags> marks(8, ~0U);
            const std::vector<FSEventStreamEventId> ids(8, 1);
            stream->callback(stream, stream->context.info, 1, const_cast<void*>(something), marks.data(),
                             ids.data());
        }
        CFRelease(something);
        release(stream);
    });
}

void FakeFileEvents::runQueue() {
    for (;;) {
        std::function<void()> work;
        {
            const std::lock_guard lock(mutex);
            if (waiting.empty()) return;
            work = std::move(waiting.front());
            waiting.pop_front();
        }
        work();
    }
}

} // namespace vesko::testing

extern "C" {

dispatch_queue_attr_t dispatch_queue_attr_make_with_qos_class(dispatch_queue_attr_t base,
                                                              dispatch_qos_class_t qosClass, int priority) {
    static QueueAttributes made;
    if (base != DISPATCH_QUEUE_SERIAL || priority != 0) std::abort();
    made.qosClass = qosClass;
    return &made;
}

dispatch_queue_t dispatch_queue_create(const char* label, dispatch_queue_attr_t attributes) {
    fakeFileEvents().queueLabel = label;
    fakeFileEvents().queueClass = attributes ? static_cast<QueueAttributes*>(attributes)->qosClass : 0U;
    ++fakeFileEvents().liveQueues;
    return new Queue;
}

void dispatch_release(dispatch_object_t object) { release(queueOf(object)); }

void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work) {
    enqueue(queue, [context, work] { work(context); });
}

FSEventStreamRef FSEventStreamCreate(CFAllocatorRef, FSEventStreamCallback callback,
                                     FSEventStreamContext* context, CFArrayRef paths,
                                     FSEventStreamEventId since, CFTimeInterval latency,
                                     FSEventStreamCreateFlags flags) {
    FakeFileEvents& fake = fakeFileEvents();
    note("create");
    fake.paths = vesko::testing::textsOf(paths);
    fake.latency = latency;
    fake.flags = flags;
    fake.since = since;
    if (fake.refusesToMake) return nullptr;
    auto* stream = new __FSEventStream;
    stream->callback = callback;
    stream->context = *context;
    if (context->retain) stream->context.info = const_cast<void*>(context->retain(context->info));
    ++fake.liveStreams;
    return stream;
}

void FSEventStreamSetDispatchQueue(FSEventStreamRef stream, dispatch_queue_t queue) {
    note("set queue");
    ++queueOf(queue)->holders;
    stream->queue = queue;
}

Boolean FSEventStreamStart(FSEventStreamRef stream) {
    note("start");
    if (fakeFileEvents().refusesToStart) return 0;
    running = stream;
    return 1;
}

void FSEventStreamStop(FSEventStreamRef) { note("stop"); }

void FSEventStreamInvalidate(FSEventStreamRef stream) {
    note("invalidate");
    stream->isValid = false;
}

void FSEventStreamRelease(FSEventStreamRef stream) {
    note("release");
    release(stream);
}
}
