#include "platform/NotificationCenterContract.h"
#include "platform/macos/FakeBundle.h"
#include "platform/macos/FakeNotifications.h"
#include "platform/macos/FakeSystem.h"
#include "support/ManualLoop.h"
#include <gmock/gmock.h>

namespace vesko::testing {
namespace {

using ::testing::ElementsAre;

/// The system's centre, and a loop that the test turns.
class UserNotifications {
public:
    UserNotifications() = default;
    UserNotifications(const UserNotifications&) = delete;
    UserNotifications& operator=(const UserNotifications&) = delete;
    ~UserNotifications() {
        registry_.cancelAll();
        loop_.drain();
    }
    const char* missing() const { return nullptr; }
    TaskContext context() { return {&loop_, nullptr, &loop_, {}, &registry_}; }
    template <class Condition> bool until(Condition condition) { return loop_.waitFor(std::move(condition)); }
    std::shared_ptr<NotificationCenter> center() { return platformNotificationCenter({}); }
    void takeAway() { fakeBundle().identifier = std::nullopt; }
    void refuse() { fakeNotifications().fails = true; }
    void hold() { fakeNotifications().holdsAnswers = true; }
    void answer() { fakeNotifications().answer(); }
    int questions() const { return fakeNotifications().questions; }

private:
    FakeSystem system_;
    ManualLoop loop_;
    TaskRegistry registry_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(OnMacos, NotificationCenterContract, UserNotifications);

class UserNotificationCenterTest : public NotificationCenterContract<UserNotifications> {
protected:
    bool show(NotificationRequest request) {
        return answerOf(ask([request](NotificationCenter& asked) { return asked.add(request); }));
    }
    FakeNotifications& notifications_ = fakeNotifications();
};

TEST_F(UserNotificationCenterTest, TheStatusIsTheSystemsNumberEvenOneThatNobodyKnows) {
    for (const int status : {0, 1, 2, 3, 4, 5, 1'000, -1}) {
        notifications_.status = status;
        EXPECT_EQ(answerOf(askStatus()), status);
    }
}

TEST_F(UserNotificationCenterTest, ARefusalIsNoFailure) {
    notifications_.grants = false;
    const Answer answer = answerOf(askPermission());
    EXPECT_FALSE(answer.granted);
    EXPECT_FALSE(answer.failed);
}

TEST_F(UserNotificationCenterTest, AnErrorIsAFailureWhateverElseIsSaid) {
    notifications_.fails = true;
    for (const bool grants : {false, true}) {
        notifications_.grants = grants;
        const Answer answer = answerOf(askPermission());
        EXPECT_EQ(answer.granted, grants);
        EXPECT_TRUE(answer.failed);
    }
}

TEST_F(UserNotificationCenterTest, ThePermissionIsAskedForWhatWasSaid) {
    for (const int options : {6, 1, 7, 0})
        answerOf(ask([options](NotificationCenter& asked) { return asked.requestAuthorization(options); }));
    EXPECT_THAT(notifications_.askedOptions, ElementsAre(6, 1, 7, 0));
}

TEST_F(UserNotificationCenterTest, TheCentreOfAProgramWithoutABundleIsNotTouched) {
    system.takeAway();
    answerOf(askStatus());
    answerOf(askPermission());
    answerOf(askToShow());
    EXPECT_EQ(notifications_.usesOutsideOfABundle, 0);
}

TEST_F(UserNotificationCenterTest, ANotificationHasItsTextsAndIsShownAtOnce) {
    EXPECT_TRUE(show({.identifier = "alert-1", .title = "Pouco espaço", .body = "Restam só 4,2 GB <b>"}));
    ASSERT_EQ(notifications_.shown.size(), 1u);
    EXPECT_EQ(notifications_.shown[0].identifier, "alert-1");
    EXPECT_EQ(notifications_.shown[0].title, "Pouco espaço");
    EXPECT_EQ(notifications_.shown[0].body, "Restam só 4,2 GB <b>");
    EXPECT_FALSE(notifications_.shown[0].hasTrigger);
}

TEST_F(UserNotificationCenterTest, EachNotificationIsARequestOfItsOwn) {
    EXPECT_TRUE(show({.identifier = "1", .title = "a", .body = "b"}));
    EXPECT_TRUE(show({.identifier = "2", .title = "c", .body = ""}));
    ASSERT_EQ(notifications_.shown.size(), 2u);
    EXPECT_EQ(notifications_.shown[1].identifier, "2");
    EXPECT_EQ(notifications_.shown[1].title, "c");
    EXPECT_EQ(notifications_.shown[1].body, "");
}

TEST_F(UserNotificationCenterTest, BytesThatAreNoTextAreLeftOut) {
    EXPECT_TRUE(show({.identifier = "\xff", .title = "\xc3(", .body = "4,2 GB"}));
    ASSERT_EQ(notifications_.shown.size(), 1u);
    EXPECT_EQ(notifications_.shown[0].identifier, "");
    EXPECT_EQ(notifications_.shown[0].title, "");
    EXPECT_EQ(notifications_.shown[0].body, "4,2 GB");
}

} // namespace
} // namespace vesko::testing
