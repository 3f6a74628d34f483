// What the adapters take the system's calls for. On a Mac this is compiled against the system's own headers,
// and on other systems against the declarations of tools/macos-check: where it compiles against both, those
// declarations have the types, the layouts and the values of the real ones. Every call of
// tools/macos-check/symbols that we declare stands here. There is nothing to run.
#include <CoreFoundation/CoreFoundation.h>
#include <CoreServices/CoreServices.h>
#include <cstddef>
#include <cstdint>
#include <dispatch/dispatch.h>
#include <pthread.h>
#include <spawn.h>
#include <sys/attr.h>
#include <sys/mount.h>
#include <sys/qos.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/vnode.h>
#include <time.h>
#include <type_traits>
#include <unistd.h>
#include <utility>

namespace {

/// Whether a function throws is a part of its type, and headers differ in saying it.
template <class Function> struct Plain;
template <class Result, class... Arguments> struct Plain<Result(Arguments...)> {
    using Type = Result(Arguments...);
};
template <class Result, class... Arguments> struct Plain<Result(Arguments...) noexcept> {
    using Type = Result(Arguments...);
};

template <class Declared, class Taken>
constexpr bool isCall = std::is_same_v<typename Plain<Declared>::Type, Taken>;
template <class Declared, class Taken> constexpr bool isSame = std::is_same_v<Declared, Taken>;
template <class Type, std::size_t Bytes>
constexpr bool isUnsignedOf = std::is_unsigned_v<Type> && sizeof(Type) == Bytes;

// --- plain types
static_assert(isSame<Boolean, unsigned char> && isSame<UInt8, unsigned char>);
static_assert(isSame<CFIndex, long> && isSame<CFTypeID, unsigned long>);
static_assert(isSame<CFTypeRef, const void*> && isSame<CFPropertyListRef, const void*>);
static_assert(isSame<CFTimeInterval, double> && isUnsignedOf<CFStringEncoding, 4>);
static_assert(std::is_pointer_v<CFStringRef> && std::is_const_v<std::remove_pointer_t<CFStringRef>>);
static_assert(std::is_pointer_v<CFArrayRef> && std::is_const_v<std::remove_pointer_t<CFArrayRef>>);
static_assert(std::is_pointer_v<CFURLRef> && std::is_const_v<std::remove_pointer_t<CFURLRef>>);
static_assert(std::is_pointer_v<CFNumberRef> && std::is_const_v<std::remove_pointer_t<CFNumberRef>>);
static_assert(isUnsignedOf<FSEventStreamEventId, 8> && isUnsignedOf<FSEventStreamCreateFlags, 4>);
static_assert(isUnsignedOf<FSEventStreamEventFlags, 4> && isUnsignedOf<attrgroup_t, 4>);
static_assert(sizeof(CFNumberType) == sizeof(CFIndex) && sizeof(dispatch_qos_class_t) == 4);
static_assert(isSame<dispatch_qos_class_t, qos_class_t> &&
              isUnsignedOf<std::underlying_type_t<qos_class_t>, 4>);
static_assert(std::is_convertible_v<dispatch_queue_t, dispatch_object_t>);

// --- values
static_assert(kCFStringEncodingUTF8 == 0x08000100);
static_assert(kCFNumberSInt64Type == 4 && kCFNumberFloat64Type == 6);
static_assert(kFSEventStreamCreateFlagUseCFTypes == 1 && kFSEventStreamCreateFlagNoDefer == 2);
static_assert(kFSEventStreamEventIdSinceNow == 0xFFFFFFFFFFFFFFFFULL);
static_assert(static_cast<unsigned>(QOS_CLASS_UTILITY) == 0x11);
static_assert(ATTR_BIT_MAP_COUNT == 5 && FSOPT_NOFOLLOW == 1);
static_assert(ATTR_CMN_RETURNED_ATTRS == 0x80000000U && ATTR_CMN_ERROR == 0x20000000);
static_assert(ATTR_CMN_NAME == 1 && ATTR_CMN_DEVID == 2 && ATTR_CMN_OBJTYPE == 8);
static_assert(ATTR_CMN_CRTIME == 0x200 && ATTR_CMN_OWNERID == 0x8000);
static_assert(ATTR_CMN_FLAGS == 0x40000 && ATTR_CMN_FILEID == 0x02000000);
static_assert(ATTR_DIR_MOUNTSTATUS == 4 && ATTR_DIR_ALLOCSIZE == 8 && DIR_MNTSTATUS_MNTPOINT == 1);
static_assert(ATTR_FILE_LINKCOUNT == 1 && ATTR_FILE_ALLOCSIZE == 4);
static_assert(VREG == 1 && VDIR == 2 && VLNK == 5);
static_assert(UF_IMMUTABLE == 2 && UF_APPEND == 4 && SF_IMMUTABLE == 0x20000 && SF_APPEND == 0x40000);
static_assert(SF_DATALESS == 0x40000000);
static_assert(IOPOL_TYPE_VFS_ATIME_UPDATES == 2 && IOPOL_TYPE_VFS_MATERIALIZE_DATALESS_FILES == 3);
static_assert(IOPOL_SCOPE_PROCESS == 0 && IOPOL_SCOPE_THREAD == 1 && IOPOL_ATIME_UPDATES_OFF == 1);
static_assert(IOPOL_MATERIALIZE_DATALESS_FILES_DEFAULT == 0);
static_assert(IOPOL_MATERIALIZE_DATALESS_FILES_OFF == 1 && IOPOL_MATERIALIZE_DATALESS_FILES_ON == 2);
static_assert(CLOCK_MONOTONIC_RAW == 4 && R_OK == 4);
static_assert(POSIX_SPAWN_CLOEXEC_DEFAULT == 0x4000);

// --- layouts
static_assert(sizeof(attrlist) == 24 && offsetof(attrlist, commonattr) == 4 &&
              offsetof(attrlist, volattr) == 8);
static_assert(offsetof(attrlist, dirattr) == 12 && offsetof(attrlist, fileattr) == 16);
static_assert(sizeof(attribute_set_t) == 20 && offsetof(attribute_set_t, commonattr) == 0);
static_assert(offsetof(attribute_set_t, dirattr) == 8 && offsetof(attribute_set_t, fileattr) == 12);
static_assert(sizeof(attrreference_t) == 8 &&
              isSame<decltype(attrreference_t::attr_dataoffset), std::int32_t>);
static_assert(sizeof(timespec) == 16);
static_assert(isUnsignedOf<decltype(std::declval<struct statfs>().f_bavail), 8>);
static_assert(isUnsignedOf<decltype(std::declval<struct statfs>().f_bsize), 4>);
static_assert(isSame<decltype(std::declval<struct stat>().st_birthtimespec), timespec>);
static_assert(isUnsignedOf<decltype(std::declval<struct stat>().st_flags), 4>);
static_assert(isSame<decltype(CFRange::location), CFIndex> && isSame<decltype(CFRange::length), CFIndex>);
static_assert(isSame<decltype(FSEventStreamContext::version), CFIndex>);
static_assert(isSame<decltype(FSEventStreamContext::info), void*>);
static_assert(isSame<decltype(FSEventStreamContext::retain), const void* (*)(const void*)>);
static_assert(isSame<decltype(FSEventStreamContext::release), void (*)(const void*)>);
static_assert(offsetof(FSEventStreamContext, info) == 8 && offsetof(FSEventStreamContext, retain) == 16);
static_assert(offsetof(FSEventStreamContext, release) == 24 && sizeof(FSEventStreamContext) == 40);

// --- Core Foundation
static_assert(isSame<decltype(kCFAllocatorDefault), const CFAllocatorRef>);
static_assert(isSame<decltype(kCFTypeArrayCallBacks), const CFArrayCallBacks>);
static_assert(isCall<decltype(CFRelease), void(CFTypeRef)>);
static_assert(isCall<decltype(CFGetTypeID), CFTypeID(CFTypeRef)>);
static_assert(isCall<decltype(CFArrayGetTypeID), CFTypeID()>);
static_assert(isCall<decltype(CFArrayCreate),
                     CFArrayRef(CFAllocatorRef, const void**, CFIndex, const CFArrayCallBacks*)>);
static_assert(isCall<decltype(CFArrayGetCount), CFIndex(CFArrayRef)>);
static_assert(isCall<decltype(CFArrayGetValueAtIndex), const void*(CFArrayRef, CFIndex)>);
static_assert(isCall<decltype(CFStringGetTypeID), CFTypeID()>);
static_assert(isCall<decltype(CFStringCreateWithBytes),
                     CFStringRef(CFAllocatorRef, const UInt8*, CFIndex, CFStringEncoding, Boolean)>);
static_assert(isCall<decltype(CFStringGetLength), CFIndex(CFStringRef)>);
static_assert(isCall<decltype(CFStringGetBytes), CFIndex(CFStringRef, CFRange, CFStringEncoding, UInt8,
                                                         Boolean, UInt8*, CFIndex, CFIndex*)>);
static_assert(isCall<decltype(CFStringGetCString), Boolean(CFStringRef, char*, CFIndex, CFStringEncoding)>);
static_assert(isCall<decltype(CFStringGetMaximumSizeForEncoding), CFIndex(CFIndex, CFStringEncoding)>);
static_assert(isCall<decltype(CFStringGetMaximumSizeOfFileSystemRepresentation), CFIndex(CFStringRef)>);
static_assert(isCall<decltype(CFStringGetFileSystemRepresentation), Boolean(CFStringRef, char*, CFIndex)>);
static_assert(isCall<decltype(CFNumberGetTypeID), CFTypeID()>);
static_assert(isCall<decltype(CFNumberCreate), CFNumberRef(CFAllocatorRef, CFNumberType, const void*)>);
static_assert(isCall<decltype(CFNumberGetValue), Boolean(CFNumberRef, CFNumberType, void*)>);
static_assert(isSame<decltype(kCFBooleanTrue), const CFBooleanRef>);
static_assert(isSame<decltype(kCFBooleanFalse), const CFBooleanRef>);
static_assert(isCall<decltype(CFBooleanGetTypeID), CFTypeID()>);
static_assert(isCall<decltype(CFBooleanGetValue), Boolean(CFBooleanRef)>);
static_assert(isCall<decltype(CFDataGetTypeID), CFTypeID()>);
static_assert(isCall<decltype(CFDataCreate), CFDataRef(CFAllocatorRef, const UInt8*, CFIndex)>);
static_assert(isCall<decltype(CFDataGetLength), CFIndex(CFDataRef)>);
static_assert(isCall<decltype(CFDataGetBytePtr), const UInt8*(CFDataRef)>);
static_assert(isSame<decltype(kCFPreferencesCurrentApplication), const CFStringRef>);
static_assert(isCall<decltype(CFPreferencesCopyAppValue), CFPropertyListRef(CFStringRef, CFStringRef)>);
static_assert(isCall<decltype(CFPreferencesSetAppValue), void(CFStringRef, CFPropertyListRef, CFStringRef)>);
static_assert(isCall<decltype(CFPreferencesAppSynchronize), Boolean(CFStringRef)>);
static_assert(isCall<decltype(CFURLCreateFromFileSystemRepresentation),
                     CFURLRef(CFAllocatorRef, const UInt8*, CFIndex, Boolean)>);
static_assert(
    isCall<decltype(CFURLCopyResourcePropertyForKey), Boolean(CFURLRef, CFStringRef, void*, CFErrorRef*)>);
static_assert(isSame<decltype(kCFURLVolumeTotalCapacityKey), const CFStringRef>);
static_assert(isSame<decltype(kCFURLVolumeAvailableCapacityKey), const CFStringRef>);
static_assert(isSame<decltype(kCFURLVolumeAvailableCapacityForImportantUsageKey), const CFStringRef>);
static_assert(isSame<decltype(kCFURLVolumeAvailableCapacityForOpportunisticUsageKey), const CFStringRef>);
static_assert(isSame<decltype(kCFURLVolumeLocalizedNameKey), const CFStringRef>);

// --- File System Events
static_assert(
    isSame<FSEventStreamCallback, void (*)(ConstFSEventStreamRef, void*, std::size_t, void*,
                                           const FSEventStreamEventFlags*, const FSEventStreamEventId*)>);
static_assert(
    isCall<decltype(FSEventStreamCreate),
           FSEventStreamRef(CFAllocatorRef, FSEventStreamCallback, FSEventStreamContext*, CFArrayRef,
                            FSEventStreamEventId, CFTimeInterval, FSEventStreamCreateFlags)>);
static_assert(isCall<decltype(FSEventStreamSetDispatchQueue), void(FSEventStreamRef, dispatch_queue_t)>);
static_assert(isCall<decltype(FSEventStreamStart), Boolean(FSEventStreamRef)>);
static_assert(isCall<decltype(FSEventStreamStop), void(FSEventStreamRef)>);
static_assert(isCall<decltype(FSEventStreamInvalidate), void(FSEventStreamRef)>);
static_assert(isCall<decltype(FSEventStreamRelease), void(FSEventStreamRef)>);

// --- queues
static_assert(isCall<decltype(dispatch_queue_attr_make_with_qos_class),
                     dispatch_queue_attr_t(dispatch_queue_attr_t, dispatch_qos_class_t, int)>);
static_assert(isCall<decltype(dispatch_queue_create), dispatch_queue_t(const char*, dispatch_queue_attr_t)>);
static_assert(isSame<dispatch_function_t, void (*)(void*)>);
static_assert(isCall<decltype(dispatch_async_f), void(dispatch_queue_t, void*, dispatch_function_t)>);
static_assert(isCall<decltype(dispatch_release), void(dispatch_object_t)>);

// --- calls of the system's core
static_assert(isCall<decltype(getattrlistbulk), int(int, void*, void*, std::size_t, std::uint64_t)>);
static_assert(isCall<decltype(getattrlist), int(const char*, void*, void*, std::size_t, unsigned int)>);
static_assert(isCall<decltype(getiopolicy_np), int(int, int)>);
static_assert(isCall<decltype(setiopolicy_np), int(int, int, int)>);
static_assert(isCall<decltype(pthread_set_qos_class_self_np), int(qos_class_t, int)>);
static_assert(isCall<decltype(clock_gettime), int(clockid_t, timespec*)>);
static_assert(isCall<decltype(access), int(const char*, int)>);
static_assert(isCall<decltype(statfs), int(const char*, struct statfs*)>);
static_assert(
    isCall<decltype(posix_spawn_file_actions_addinherit_np), int(posix_spawn_file_actions_t*, int)>);

} // namespace
