#pragma once
#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace vesko::testing {

/// The system's notification centre (UNUserNotificationCenter). It answers on threads of its own, at once or
/// when the test says so.
struct FakeNotifications {
    struct Shown {
        std::string identifier;
        std::string title;
        std::string body;
        bool hasTrigger = false;
    };

    long status = 2; ///< what the person has said
    bool grants = true;
    bool fails = false; ///< each answer but the status comes with an error
    bool holdsAnswers = false;

    int questions = 0;
    int usesOutsideOfABundle = 0; ///< each of them would end the process
    std::vector<unsigned long> askedOptions;
    std::vector<Shown> shown;

    /// Gives the answers that are held, on another thread.
    void answer();
    /// An answer that has been made out.
    void take(std::function<void()> given);

private:
    std::deque<std::function<void()>> held_;
};

FakeNotifications& fakeNotifications();
/// A fresh one for each test.
void resetFakeNotifications();

} // namespace vesko::testing
