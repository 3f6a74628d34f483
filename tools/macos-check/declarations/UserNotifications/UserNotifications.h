// Declarations of our own, after Apple's public documentation: just the calls that the adapters use. Only for
// the compile check on other systems; a build on macOS uses the real headers.
#pragma once
#include <Foundation/Foundation.h>
typedef NSUInteger UNAuthorizationOptions;
typedef NSInteger UNAuthorizationStatus;
@interface UNNotificationSettings : NSObject
@property(readonly) UNAuthorizationStatus authorizationStatus;
@end
@interface UNNotificationContent : NSObject
@end
@interface UNMutableNotificationContent : UNNotificationContent
@property(copy) NSString* title;
@property(copy) NSString* body;
@end
@class UNNotificationTrigger;
@interface UNNotificationRequest : NSObject
+ (instancetype)requestWithIdentifier:(NSString*)identifier
                              content:(UNNotificationContent*)content
                              trigger:(UNNotificationTrigger*)trigger;
@end
__attribute__((availability(macos, introduced = 10.14)))
@interface UNUserNotificationCenter : NSObject
+ (UNUserNotificationCenter*)currentNotificationCenter;
- (void)requestAuthorizationWithOptions:(UNAuthorizationOptions)options
                      completionHandler:(void (^)(BOOL granted, NSError* error))completionHandler;
- (void)getNotificationSettingsWithCompletionHandler:
    (void (^)(UNNotificationSettings* settings))completionHandler;
- (void)addNotificationRequest:(UNNotificationRequest*)request
         withCompletionHandler:(void (^)(NSError* error))completionHandler;
@end
