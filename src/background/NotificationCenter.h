#pragma once
#include "concurrency/Task.h"
#include <functional>
#include <memory>
#include <string>

namespace vesko {

/// What is shown: at once, one line and the text below it, both plain.
struct NotificationRequest {
    std::string identifier; ///< different for each one
    std::string title;
    std::string body;
};

/// The place where a platform shows notifications. Main thread; an answer is awaited and never blocks.
class NotificationCenter {
public:
    /// What the person has said to notifications of this program, with the numbers of the platform that has
    /// such a question (UNAuthorizationStatus). Where there is none, a centre says denied or authorized.
    enum AuthorizationStatus : int {
        notDetermined = 0,
        denied = 1,
        authorized = 2,
        provisional = 3,
        ephemeral = 4
    };
    /// What a notification may do, to be added up (UNAuthorizationOptions).
    enum AuthorizationOption : int { badge = 1, sound = 2, alert = 4 };

    struct Answer {
        bool granted = false;
        bool failed = false; ///< the question itself went wrong
    };

    virtual ~NotificationCenter() = default;
    /// Maybe a number that later versions of a platform know and this program does not.
    virtual Task<int> authorizationStatus() = 0;
    virtual Task<Answer> requestAuthorization(int options) = 0;
    /// False: it could not be handed over.
    virtual Task<bool> add(NotificationRequest request) = 0;
};

/// The centre of this platform. `onClick` is called when the person clicks on a notification where the
/// platform does not bring the program to the front by itself.
std::shared_ptr<NotificationCenter> platformNotificationCenter(std::function<void()> onClick);

} // namespace vesko
