// Declarations of our own, after Apple's public documentation: just the calls that the adapters use. Only for
// the compile check on other systems; a build on macOS uses the real headers.
#pragma once
#include <CoreFoundation/CoreFoundation.h>
#include <dispatch/dispatch.h>
#ifdef __cplusplus
extern "C" {
#endif
typedef struct __FSEventStream* FSEventStreamRef;
typedef const struct __FSEventStream* ConstFSEventStreamRef;
typedef uint64_t FSEventStreamEventId;
typedef uint32_t FSEventStreamCreateFlags, FSEventStreamEventFlags;
enum {
    kFSEventStreamCreateFlagNone = 0,
    kFSEventStreamCreateFlagUseCFTypes = 1,
    kFSEventStreamCreateFlagNoDefer = 2,
    kFSEventStreamCreateFlagWatchRoot = 4,
    kFSEventStreamCreateFlagIgnoreSelf = 8,
    kFSEventStreamCreateFlagFileEvents = 16
};
enum {
    kFSEventStreamEventFlagMustScanSubDirs = 1,
    kFSEventStreamEventFlagUserDropped = 2,
    kFSEventStreamEventFlagKernelDropped = 4,
    kFSEventStreamEventFlagEventIdsWrapped = 8,
    kFSEventStreamEventFlagHistoryDone = 16,
    kFSEventStreamEventFlagRootChanged = 32,
    kFSEventStreamEventFlagMount = 64,
    kFSEventStreamEventFlagUnmount = 128
};
#define kFSEventStreamEventIdSinceNow ((FSEventStreamEventId)0xFFFFFFFFFFFFFFFFULL)
typedef const void* (*CFAllocatorRetainCallBack)(const void* info);
typedef void (*CFAllocatorReleaseCallBack)(const void* info);
typedef CFStringRef (*CFAllocatorCopyDescriptionCallBack)(const void* info);
typedef struct FSEventStreamContext {
    CFIndex version;
    void* info;
    CFAllocatorRetainCallBack retain;
    CFAllocatorReleaseCallBack release;
    CFAllocatorCopyDescriptionCallBack copyDescription;
} FSEventStreamContext;
typedef void (*FSEventStreamCallback)(ConstFSEventStreamRef, void* info, size_t n, void* paths,
                                      const FSEventStreamEventFlags* flags, const FSEventStreamEventId* ids);
FSEventStreamRef FSEventStreamCreate(CFAllocatorRef, FSEventStreamCallback, FSEventStreamContext*,
                                     CFArrayRef paths, FSEventStreamEventId since, CFTimeInterval latency,
                                     FSEventStreamCreateFlags);
void FSEventStreamSetDispatchQueue(FSEventStreamRef, dispatch_queue_t);
Boolean FSEventStreamStart(FSEventStreamRef);
void FSEventStreamStop(FSEventStreamRef);
void FSEventStreamInvalidate(FSEventStreamRef);
void FSEventStreamRelease(FSEventStreamRef);
#ifdef __cplusplus
}
#endif
