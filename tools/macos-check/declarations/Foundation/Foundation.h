// Declarations of our own, after Apple's public documentation: just the calls that the adapters use. Only for
// the compile check on other systems; a build on macOS uses the real headers.
#pragma once
#include <CoreFoundation/CoreFoundation.h>
#include <dispatch/dispatch.h>
typedef signed char BOOL_compat_;
#if defined(__OBJC_BOOL_IS_BOOL) && __OBJC_BOOL_IS_BOOL
typedef bool BOOL;
#else
typedef signed char BOOL;
#endif
#ifdef __cplusplus
#define nil nullptr
#else
#define nil ((void*)0)
#endif
#define YES __objc_yes
#define NO __objc_no
typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef double NSTimeInterval;
@class NSString, NSURL, NSError, NSArray<T>, NSDictionary<K, V>, NSNumber;
__attribute__((objc_root_class))
@interface NSObject {
    Class isa;
}
+ (instancetype)alloc;
+ (instancetype)new;
+ (BOOL)instancesRespondToSelector:(SEL)selector;
- (instancetype)init;
- (void)addObserver:(NSObject*)observer
         forKeyPath:(NSString*)keyPath
            options:(NSUInteger)options
            context:(void*)context;
- (void)removeObserver:(NSObject*)observer forKeyPath:(NSString*)keyPath;
- (void)observeValueForKeyPath:(NSString*)keyPath
                      ofObject:(id)object
                        change:(NSDictionary<NSString*, id>*)change
                       context:(void*)context;
@end
@protocol NSObject
@end
@interface NSString : NSObject
+ (instancetype)stringWithUTF8String:(const char*)s;
- (NSString*)stringByAppendingPathComponent:(NSString*)component;
@property(readonly) const char* UTF8String;
@end
@interface NSConstantString : NSString
@end
@interface NSNumber : NSObject
@property(readonly) long long longLongValue;
@property(readonly) BOOL boolValue;
@end
@interface NSError : NSObject
@property(readonly, copy) NSString* localizedDescription;
@end
@interface NSArray<T> : NSObject
+ (instancetype)arrayWithObjects:(const T[])objects count:(NSUInteger)n;
@property(readonly) NSUInteger count;
- (T)objectAtIndexedSubscript:(NSUInteger)i;
@end
typedef NSString* NSURLResourceKey;
extern NSURLResourceKey const NSURLVolumeAvailableCapacityForImportantUsageKey;
extern NSURLResourceKey const NSURLVolumeTotalCapacityKey;
@interface NSDictionary<K, V> : NSObject
- (V)objectForKeyedSubscript:(K)key;
@end
@interface NSURL : NSObject
+ (instancetype)fileURLWithPath:(NSString*)path;
- (NSDictionary<NSURLResourceKey, id>*)resourceValuesForKeys:(NSArray<NSURLResourceKey>*)keys
                                                       error:(NSError**)error;
@end
@interface NSBundle : NSObject
@property(class, readonly, strong) NSBundle* mainBundle;
+ (NSBundle*)bundleWithURL:(NSURL*)url;
+ (instancetype)bundleWithPath:(NSString*)path;
- (Class)classNamed:(NSString*)name;
@property(readonly, copy) NSString* bundleIdentifier;
@property(readonly, copy) NSString* privateFrameworksPath;
@end
// background activity
typedef NSInteger NSQualityOfService;
enum : NSInteger { NSQualityOfServiceUtility = 0x11, NSQualityOfServiceBackground = 0x09 };
typedef NSInteger NSBackgroundActivityResult;
enum : NSInteger { NSBackgroundActivityResultFinished = 1, NSBackgroundActivityResultDeferred = 2 };
typedef void (^NSBackgroundActivityCompletionHandler)(NSBackgroundActivityResult result);
__attribute__((availability(macos, introduced = 10.10)))
@interface NSBackgroundActivityScheduler : NSObject
- (instancetype)initWithIdentifier:(NSString*)identifier;
@property NSQualityOfService qualityOfService;
@property BOOL repeats;
@property NSTimeInterval interval;
@property NSTimeInterval tolerance;
@property(readonly) BOOL shouldDefer;
- (void)scheduleWithBlock:(void (^)(NSBackgroundActivityCompletionHandler completionHandler))block;
- (void)invalidate;
@end
