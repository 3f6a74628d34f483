#include "platform/macos/FakeNotifications.h"

#include "platform/macos/FakeBundle.h"
#include "platform/macos/FakeObjects.h"
#include <UserNotifications/UserNotifications.h>
#include <thread>
#include <utility>

namespace vesko::testing {
namespace {

FakeNotifications current;

} // namespace

FakeNotifications& fakeNotifications() { return current; }
void resetFakeNotifications() { current = FakeNotifications(); }

void FakeNotifications::take(std::function<void()> given) {
    ++questions;
    held_.push_back(std::move(given));
    if (!holdsAnswers) answer();
}

void FakeNotifications::answer() {
    std::thread([answers = std::exchange(held_, {})] {
        for (const auto& given : answers) given();
    }).join();
}

} // namespace vesko::testing

using namespace vesko::testing;

@implementation UNNotificationSettings
- (UNAuthorizationStatus)authorizationStatus {
    return fakeNotifications().status;
}
@end

@implementation UNNotificationContent
@end

@implementation UNMutableNotificationContent
- (NSString*)title {
    return textOf(valueOf<std::string>(self, "title"));
}
- (void)setTitle:(NSString*)title {
    valueOf<std::string>(self, "title") = title == nil ? "nil" : bytesOf(title);
}
- (NSString*)body {
    return textOf(valueOf<std::string>(self, "body"));
}
- (void)setBody:(NSString*)body {
    valueOf<std::string>(self, "body") = body == nil ? "nil" : bytesOf(body);
}
@end

@implementation UNNotificationRequest
+ (instancetype)requestWithIdentifier:(NSString*)identifier
                              content:(UNNotificationContent*)content
                              trigger:(UNNotificationTrigger*)trigger {
    UNNotificationRequest* request = [UNNotificationRequest new];
    valueOf<FakeNotifications::Shown>(request, "shown") = {
        .identifier = identifier == nil ? "nil" : bytesOf(identifier),
        .title = valueOf<std::string>(content, "title"),
        .body = valueOf<std::string>(content, "body"),
        .hasTrigger = trigger != nil};
    return request;
}
@end

@implementation UNUserNotificationCenter
+ (UNUserNotificationCenter*)currentNotificationCenter {
    if (!fakeBundle().identifier) ++fakeNotifications().usesOutsideOfABundle;
    return [UNUserNotificationCenter new];
}
- (void)requestAuthorizationWithOptions:(UNAuthorizationOptions)options
                      completionHandler:(void (^)(BOOL granted, NSError* error))completionHandler {
    fakeNotifications().askedOptions.push_back(options);
    fakeNotifications().take([handler = kept(completionHandler)] {
        handler(fakeNotifications().grants ? YES : NO, fakeNotifications().fails ? [NSError new] : nil);
    });
}
- (void)getNotificationSettingsWithCompletionHandler:
    (void (^)(UNNotificationSettings* settings))completionHandler {
    fakeNotifications().take([handler = kept(completionHandler)] { handler([UNNotificationSettings new]); });
}
- (void)addNotificationRequest:(UNNotificationRequest*)request
         withCompletionHandler:(void (^)(NSError* error))completionHandler {
    fakeNotifications().shown.push_back(valueOf<FakeNotifications::Shown>(request, "shown"));
    fakeNotifications().take(
        [handler = kept(completionHandler)] { handler(fakeNotifications().fails ? [NSError new] : nil); });
}
@end
