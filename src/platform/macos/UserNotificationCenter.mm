#include "background/NotificationCenter.h"

#include "concurrency/AsyncStream.h"
#import <Foundation/Foundation.h>
#import <UserNotifications/UserNotifications.h>
#include <utility>

namespace vesko {
namespace {

/// Never nil, which a request would not take: without text where the bytes are no UTF-8.
NSString* text(const std::string& utf8) {
    NSString* made = [NSString stringWithUTF8String:utf8.c_str()];
    return made != nil ? made : @"";
}

/// The system's notification centre. It answers on threads of its own; a click on a notification brings the
/// program to the front by itself. Only a program in a bundle has one: asking for it without ends the
/// process.
class UserNotificationCenter final : public NotificationCenter {
public:
    Task<int> authorizationStatus() override {
        if (!isInBundle()) co_return denied;
        AsyncStream<int> answers([](const AsyncStream<int>::Producer& given) {
            const AsyncStream<int>::Producer producer = given;
            [UNUserNotificationCenter.currentNotificationCenter
                getNotificationSettingsWithCompletionHandler:^(UNNotificationSettings* settings) {
                  producer.yield(static_cast<int>(settings.authorizationStatus));
                }];
        });
        const std::optional<int> status = co_await answers.next();
        co_return status.value_or(denied);
    }

    Task<Answer> requestAuthorization(int options) override {
        if (!isInBundle()) co_return Answer{};
        AsyncStream<Answer> answers([options](const AsyncStream<Answer>::Producer& given) {
            const AsyncStream<Answer>::Producer producer = given;
            [UNUserNotificationCenter.currentNotificationCenter
                requestAuthorizationWithOptions:static_cast<UNAuthorizationOptions>(options)
                              completionHandler:^(BOOL granted, NSError* error) {
                                producer.yield({.granted = granted != NO, .failed = error != nil});
                              }];
        });
        const std::optional<Answer> answer = co_await answers.next();
        co_return answer.value_or(Answer{});
    }

    Task<bool> add(NotificationRequest request) override {
        if (!isInBundle()) co_return false;
        AsyncStream<bool> answers([&request](const AsyncStream<bool>::Producer& given) {
            const AsyncStream<bool>::Producer producer = given;
            UNMutableNotificationContent* content = [[UNMutableNotificationContent alloc] init];
            content.title = text(request.title);
            content.body = text(request.body);
            // Without a trigger it is shown at once.
            [UNUserNotificationCenter.currentNotificationCenter
                addNotificationRequest:[UNNotificationRequest requestWithIdentifier:text(request.identifier)
                                                                            content:content
                                                                            trigger:nil]
                 withCompletionHandler:^(NSError* error) { producer.yield(error == nil); }];
        });
        const std::optional<bool> taken = co_await answers.next();
        co_return taken.value_or(false);
    }

private:
    static bool isInBundle() { return NSBundle.mainBundle.bundleIdentifier != nil; }
};

} // namespace

std::shared_ptr<NotificationCenter> platformNotificationCenter(std::function<void()>) {
    return std::make_shared<UserNotificationCenter>();
}

} // namespace vesko
