// Declarations of our own, after Apple's public documentation: just the calls that the adapters use. Only for
// the compile check on other systems; a build on macOS uses the real headers.
#pragma once
#include <stddef.h>
#include <stdint.h>
#ifdef __cplusplus
extern "C" {
#endif
typedef unsigned char Boolean, UInt8;
typedef signed long CFIndex;
typedef unsigned long CFTypeID, CFOptionFlags, CFHashCode;
typedef double CFTimeInterval, CFAbsoluteTime;
typedef uint32_t CFStringEncoding;
typedef const void* CFTypeRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFString* CFStringRef;
typedef const struct __CFArray* CFArrayRef;
typedef const struct __CFURL* CFURLRef;
typedef const struct __CFNumber* CFNumberRef;
typedef const struct __CFBoolean* CFBooleanRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef struct __CFBundle* CFBundleRef;
typedef struct __CFError* CFErrorRef;
typedef Boolean (*CFArrayEqualCallBack)(const void* value1, const void* value2);
typedef struct {
    CFIndex version;
    const void* (*retain)(CFAllocatorRef allocator, const void* value);
    void (*release)(CFAllocatorRef allocator, const void* value);
    CFStringRef (*copyDescription)(const void* value);
    CFArrayEqualCallBack equal;
} CFArrayCallBacks;
extern const CFAllocatorRef kCFAllocatorDefault;
extern const CFArrayCallBacks kCFTypeArrayCallBacks;
enum { kCFStringEncodingUTF8 = 0x08000100 };
typedef enum CFNumberType : CFIndex { kCFNumberSInt64Type = 4, kCFNumberFloat64Type = 6 } CFNumberType;
void CFRelease(CFTypeRef cf);
CFTypeRef CFRetain(CFTypeRef cf);
CFTypeID CFGetTypeID(CFTypeRef cf);
CFStringRef CFStringCreateWithBytes(CFAllocatorRef alloc, const UInt8* bytes, CFIndex numBytes,
                                    CFStringEncoding enc, Boolean isExternal);
CFTypeID CFStringGetTypeID(void);
CFIndex CFStringGetMaximumSizeOfFileSystemRepresentation(CFStringRef string);
Boolean CFStringGetFileSystemRepresentation(CFStringRef string, char* buffer, CFIndex maxBufLen);
CFArrayRef CFArrayCreate(CFAllocatorRef alloc, const void** values, CFIndex n, const CFArrayCallBacks* cb);
CFTypeID CFArrayGetTypeID(void);
CFIndex CFArrayGetCount(CFArrayRef array);
const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);
CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef alloc, const UInt8* buffer, CFIndex n,
                                                 Boolean isDirectory);
Boolean CFURLCopyResourcePropertyForKey(CFURLRef url, CFStringRef key, void* valueOut, CFErrorRef* error);
CFTypeID CFNumberGetTypeID(void);
CFNumberRef CFNumberCreate(CFAllocatorRef alloc, CFNumberType type, const void* valuePtr);
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* valuePtr);
extern const CFBooleanRef kCFBooleanTrue;
extern const CFBooleanRef kCFBooleanFalse;
CFTypeID CFBooleanGetTypeID(void);
Boolean CFBooleanGetValue(CFBooleanRef boolean);
typedef const struct __CFData* CFDataRef;
CFTypeID CFDataGetTypeID(void);
CFDataRef CFDataCreate(CFAllocatorRef alloc, const UInt8* bytes, CFIndex length);
CFIndex CFDataGetLength(CFDataRef data);
const UInt8* CFDataGetBytePtr(CFDataRef data);
typedef CFTypeRef CFPropertyListRef;
extern const CFStringRef kCFPreferencesCurrentApplication;
CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef applicationID);
void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef applicationID);
Boolean CFPreferencesAppSynchronize(CFStringRef applicationID);
CFBundleRef CFBundleCreate(CFAllocatorRef alloc, CFURLRef bundleURL);
CFStringRef CFBundleGetIdentifier(CFBundleRef bundle);
CFIndex CFStringGetLength(CFStringRef string);
typedef struct {
    CFIndex location;
    CFIndex length;
} CFRange;
CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean isExternal, UInt8* buffer, CFIndex size, CFIndex* used);
CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding);
Boolean CFStringGetCString(CFStringRef s, char* buf, CFIndex size, CFStringEncoding enc);
extern const CFStringRef kCFURLVolumeTotalCapacityKey;
extern const CFStringRef kCFURLVolumeAvailableCapacityKey;
extern const CFStringRef kCFURLVolumeAvailableCapacityForImportantUsageKey;
extern const CFStringRef kCFURLVolumeAvailableCapacityForOpportunisticUsageKey;
extern const CFStringRef kCFURLVolumeLocalizedNameKey;
extern const CFStringRef kCFURLVolumeIsLocalKey;
#ifdef __cplusplus
}
#endif
