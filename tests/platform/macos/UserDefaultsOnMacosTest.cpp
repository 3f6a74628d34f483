#include "platform/macos/FakeCoreFoundation.h"
#include "platform/macos/FakePreferences.h"
#include "platform/posix/PlatformUserDefaults.h"
#include "support/UserDefaultsContract.h"

namespace vesko {
namespace {

using testing::fakePreferences;
using Calls = std::vector<std::string>;

class UserDefaultsOnMacos : public ::testing::Test {
protected:
    UserDefaultsOnMacos() { testing::resetFakePreferences(); }
    ~UserDefaultsOnMacos() override {
        testing::resetFakePreferences();
        EXPECT_EQ(testing::heldReferences(), before_) << "a leak, or one release too many";
    }

    std::shared_ptr<UserDefaults> defaults = platformUserDefaults({});

private:
    std::size_t before_ = testing::heldReferences();
};

TEST_F(UserDefaultsOnMacos, EachChangeIsSynchronizedOnceAndAfterIt) {
    defaults->setBoolean("a", true);
    defaults->setInteger("b", 1);
    defaults->setNumber("c", 1.5);
    defaults->setString("d", "text");
    defaults->setData("e", "data");
    defaults->remove("a");
    EXPECT_EQ(fakePreferences().calls,
              (Calls{"set a", "synchronize", "set b", "synchronize", "set c", "synchronize", "set d",
                     "synchronize", "set e", "synchronize", "remove a", "synchronize"}));
}

TEST_F(UserDefaultsOnMacos, ReadingChangesAndSynchronizesNothing) {
    fakePreferences().put("key", testing::makeText("text"));
    defaults->boolean("key");
    defaults->integer("key");
    defaults->number("key");
    defaults->string("key");
    defaults->data("key");
    EXPECT_EQ(fakePreferences().calls, Calls());
}

TEST_F(UserDefaultsOnMacos, WhatWasSetLastsBeyondAKilledProcess) {
    defaults->setString("stays", "text");
    defaults->setBoolean("goes", true);
    defaults->remove("goes");
    fakePreferences().startAgain();
    EXPECT_EQ(defaults->string("stays"), "text");
    EXPECT_FALSE(defaults->boolean("goes"));
}

TEST_F(UserDefaultsOnMacos, WhatTheSystemDoesNotKeepIsThereUntilTheProgramEnds) {
    fakePreferences().refusesToSynchronize = true;
    defaults->setInteger("key", 7);
    EXPECT_EQ(defaults->integer("key"), 7);
    fakePreferences().startAgain();
    EXPECT_FALSE(defaults->integer("key"));
}

TEST_F(UserDefaultsOnMacos, WhatCanNotBeKeptIsNotHandedToTheSystem) {
    defaults->setNumber("key", std::nan(""));
    defaults->setString("key", "\xff");
    defaults->setString("key", std::string(UserDefaults::longestValue + 1, 'x'));
    defaults->setData("key", std::string(UserDefaults::longestValue + 1, 'x'));
    EXPECT_EQ(fakePreferences().calls, Calls());
}

TEST_F(UserDefaultsOnMacos, AKeyThatIsNoTextHasNoValueAndTakesNone) {
    const std::string key = "caf\xe9";
    defaults->setBoolean(key, true);
    defaults->setString(key, "text");
    defaults->remove(key);
    EXPECT_FALSE(defaults->boolean(key));
    EXPECT_FALSE(defaults->string(key));
    EXPECT_EQ(fakePreferences().calls, Calls());
}

TEST_F(UserDefaultsOnMacos, AListOrATableOfAnotherProgramCountsAsNone) {
    fakePreferences().put("list", testing::makeList({"a", "b"}));
    fakePreferences().put("table", testing::makeTable());
    for (const std::string_view key : {"list", "table"}) {
        EXPECT_FALSE(defaults->boolean(key)) << key;
        EXPECT_FALSE(defaults->integer(key)) << key;
        EXPECT_FALSE(defaults->number(key)) << key;
        EXPECT_FALSE(defaults->string(key)) << key;
        EXPECT_FALSE(defaults->data(key)) << key;
    }
}

TEST_F(UserDefaultsOnMacos, ATextThatHasNoUtf8CountsAsNone) {
    fakePreferences().put("half", testing::makeTextOf(u"a\xd83d"));
    fakePreferences().put("whole", testing::makeTextOf(u"a\xd83d\xde00"));
    EXPECT_FALSE(defaults->string("half"));
    EXPECT_EQ(defaults->string("whole"), "a\xf0\x9f\x98\x80");
}

TEST_F(UserDefaultsOnMacos, OnlyAWholeNumberIsAnInteger) {
    defaults->setNumber("whole", 3.0);
    defaults->setNumber("half", 3.5);
    defaults->setNumber("beyond", 0x1p63);
    EXPECT_EQ(defaults->integer("whole"), 3);
    EXPECT_FALSE(defaults->integer("half"));
    EXPECT_FALSE(defaults->integer("beyond"));
}

} // namespace

namespace testing {
namespace {

std::size_t heldBefore = 0;

UserDefaultsSubject onMacos() {
    return {.name = "Preferences",
            .makeEmpty =
                [] {
                    resetFakePreferences();
                    heldBefore = heldReferences();
                    return platformUserDefaults({});
                },
            .end =
                [] {
                    resetFakePreferences();
                    EXPECT_EQ(heldReferences(), heldBefore) << "a leak, or one release too many";
                }};
}

} // namespace

INSTANTIATE_TEST_SUITE_P(OnMacos, UserDefaultsContract, ::testing::Values(onMacos()), userDefaultsName);

} // namespace testing
} // namespace vesko
