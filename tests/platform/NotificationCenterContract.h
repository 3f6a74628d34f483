#pragma once
#include "background/NotificationCenter.h"
#include "concurrency/Concurrency.h"
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <utility>

namespace vesko::testing {

/// What the notification centres of every system promise. `System` is a loop, and the system that answers:
///     const char* missing();          // what this machine lacks for the tests, or nothing
///     TaskContext context();
///     bool until(condition);          // turns the loop; false: the condition did not come true in good time
///     std::shared_ptr<NotificationCenter> center();
///     void takeAway();                // there is no place for notifications
///     void refuse();                  // nothing can be handed over any more
///     void hold();                    // questions are not answered
///     void answer();                  // those that wait are
///     int questions();                // how many came in
template <class System> class NotificationCenterContract : public ::testing::Test {
protected:
    using Answer = NotificationCenter::Answer;

    void SetUp() override {
        if (const char* missing = system.missing()) GTEST_SKIP() << missing;
        center = system.center();
    }

    /// A question under way.
    template <class T> struct Asked {
        TaskHandle<void> task;
        std::shared_ptr<std::optional<T>> answer = std::make_shared<std::optional<T>>();
    };
    template <class F> auto ask(F question) {
        using T = typename std::invoke_result_t<F&, NotificationCenter&>::value_type;
        Asked<T> asked;
        // Not the one who asks keeps the centre.
        asked.task = spawn(system.context(),
                           [question = std::move(question), answer = asked.answer,
                            asked = center.get()]() mutable -> Task<void> {
                               T given = co_await question(*asked);
                               *answer = std::move(given);
                           });
        return asked;
    }
    template <class T> T answerOf(const Asked<T>& asked) {
        EXPECT_TRUE(system.until([&] { return asked.answer->has_value(); }));
        return asked.answer->value();
    }

    auto askStatus() {
        return ask([](NotificationCenter& asked) { return asked.authorizationStatus(); });
    }
    auto askPermission() {
        return ask([](NotificationCenter& asked) {
            return asked.requestAuthorization(NotificationCenter::sound | NotificationCenter::alert);
        });
    }
    auto askToShow() {
        return ask([](NotificationCenter& asked) {
            return asked.add({.identifier = "id", .title = "title", .body = "body"});
        });
    }
    /// As many questions have come in.
    bool hasCome(int questions) {
        return system.until([&] { return system.questions() == questions; });
    }
    /// The loop goes on.
    bool turns() {
        bool hasTurned = false;
        system.context().home->post([&] { hasTurned = true; });
        return system.until([&] { return hasTurned; });
    }

    System system;
    std::shared_ptr<NotificationCenter> center;
};
TYPED_TEST_SUITE_P(NotificationCenterContract);

TYPED_TEST_P(NotificationCenterContract, WhereItIsAllowedNotificationsAreTaken) {
    EXPECT_EQ(this->answerOf(this->askStatus()), NotificationCenter::authorized);
    const auto answer = this->answerOf(this->askPermission());
    EXPECT_TRUE(answer.granted);
    EXPECT_FALSE(answer.failed);
    EXPECT_TRUE(this->answerOf(this->askToShow()));
    EXPECT_EQ(this->system.questions(), 3);
}

TYPED_TEST_P(NotificationCenterContract, WithoutAPlaceForThemTheyAreDeniedAndNothingFails) {
    this->system.takeAway();
    EXPECT_EQ(this->answerOf(this->askStatus()), NotificationCenter::denied);
    const auto answer = this->answerOf(this->askPermission());
    EXPECT_FALSE(answer.granted);
    EXPECT_FALSE(answer.failed);
    EXPECT_FALSE(this->answerOf(this->askToShow()));
    EXPECT_EQ(this->system.questions(), 0);
}

TYPED_TEST_P(NotificationCenterContract, WhatIsNotTakenIsTold) {
    this->system.refuse();
    EXPECT_FALSE(this->answerOf(this->askToShow()));
    EXPECT_EQ(this->system.questions(), 1);
}

TYPED_TEST_P(NotificationCenterContract, ALateAnswerIsWaitedForAndTheLoopGoesOn) {
    this->system.hold();
    const auto status = this->askStatus();
    const auto permission = this->askPermission();
    const auto shown = this->askToShow();
    EXPECT_TRUE(this->hasCome(3));
    EXPECT_TRUE(this->turns());
    EXPECT_FALSE(*status.answer);
    EXPECT_FALSE(*permission.answer);
    EXPECT_FALSE(*shown.answer);
    this->system.answer();
    EXPECT_EQ(this->answerOf(status), NotificationCenter::authorized);
    EXPECT_TRUE(this->answerOf(permission).granted);
    EXPECT_TRUE(this->answerOf(shown));
}

TYPED_TEST_P(NotificationCenterContract, AWaitThatIsCancelledEndsAndItsAnswerComesForNobody) {
    this->system.hold();
    const auto status = this->askStatus();
    const auto permission = this->askPermission();
    const auto shown = this->askToShow();
    EXPECT_TRUE(this->hasCome(3));
    status.task.cancel();
    permission.task.cancel();
    shown.task.cancel();
    EXPECT_EQ(this->answerOf(status), NotificationCenter::denied);
    EXPECT_FALSE(this->answerOf(permission).granted);
    EXPECT_FALSE(this->answerOf(shown));
    this->system.answer();
    EXPECT_TRUE(this->turns());
    const auto again = this->askStatus();
    EXPECT_TRUE(this->hasCome(4));
    this->system.answer();
    EXPECT_EQ(this->answerOf(again), NotificationCenter::authorized);
}

TYPED_TEST_P(NotificationCenterContract, OneThatIsCancelledBeforeItHasAskedEndsAsWell) {
    this->system.hold();
    const auto status = this->askStatus();
    const auto shown = this->askToShow();
    status.task.cancel();
    shown.task.cancel();
    EXPECT_EQ(this->answerOf(status), NotificationCenter::denied);
    EXPECT_FALSE(this->answerOf(shown));
}

TYPED_TEST_P(NotificationCenterContract, TheCentreMayGoWhileAnAnswerIsUnderWay) {
    this->system.hold();
    const auto status = this->askStatus();
    const auto permission = this->askPermission();
    const auto shown = this->askToShow();
    EXPECT_TRUE(this->hasCome(3));
    this->center.reset();
    this->system.answer();
    EXPECT_TRUE(this->turns());
    status.task.cancel();
    permission.task.cancel();
    shown.task.cancel();
    EXPECT_TRUE(this->system.until(
        [&] { return status.task.done() && permission.task.done() && shown.task.done(); }));
}

REGISTER_TYPED_TEST_SUITE_P(NotificationCenterContract, WhereItIsAllowedNotificationsAreTaken,
                            WithoutAPlaceForThemTheyAreDeniedAndNothingFails, WhatIsNotTakenIsTold,
                            ALateAnswerIsWaitedForAndTheLoopGoesOn,
                            AWaitThatIsCancelledEndsAndItsAnswerComesForNobody,
                            OneThatIsCancelledBeforeItHasAskedEndsAsWell,
                            TheCentreMayGoWhileAnAnswerIsUnderWay);

} // namespace vesko::testing
