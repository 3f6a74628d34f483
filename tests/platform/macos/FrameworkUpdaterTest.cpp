#include "background/PlatformUpdater.h"
#include "platform/UpdaterContract.h"
#include "platform/macos/FakeBundle.h"
#include "platform/macos/FakeSystem.h"
#include "platform/macos/FakeUpdaterFramework.h"
#include <gmock/gmock.h>

namespace vesko::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

/// The framework in the bundle.
class Framework {
public:
    std::shared_ptr<Updater> make() {
        fakeUpdaterFramework().layIntoBundle();
        return platformUpdater({}, nullptr);
    }
    std::shared_ptr<Updater> makeWithNobody() { return platformUpdater({}, nullptr); }
    void endCheck() { fakeUpdaterFramework().endCheck(); }
    int checks() { return fakeUpdaterFramework().checks; }

private:
    FakeSystem system_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(OnMacos, UpdaterContract, Framework);

class FrameworkUpdaterTest : public ::testing::Test {
protected:
    void make() {
        framework_.layIntoBundle();
        updater_ = platformUpdater({}, nullptr);
        told_ = updater_->changes.subscribe([this] { ++changes_; });
    }

    FakeSystem system_;
    FakeUpdaterFramework& framework_ = fakeUpdaterFramework();
    std::shared_ptr<Updater> updater_;
    ChangeSource::Subscription told_;
    int changes_ = 0;
};

TEST_F(FrameworkUpdaterTest, TheFrameworkIsLookedForInTheBundleAlone) {
    make();
    EXPECT_TRUE(updater_->canCheckForUpdates());
    EXPECT_THAT(fakeBundle().askedPaths,
                ElementsAre("/Applications/Program.app/Contents/Frameworks/Sparkle.framework"));
}

TEST_F(FrameworkUpdaterTest, ItCannotCheckOutsideOfABundle) {
    fakeBundle().frameworks = std::nullopt;
    updater_ = platformUpdater({}, nullptr);
    EXPECT_FALSE(updater_->canCheckForUpdates());
    EXPECT_THAT(fakeBundle().askedPaths, IsEmpty());
}

TEST_F(FrameworkUpdaterTest, ItCannotCheckWithAFrameworkThatKnowsOtherCalls) {
    framework_.layStrangerIntoBundle();
    updater_ = platformUpdater({}, nullptr);
    EXPECT_FALSE(updater_->canCheckForUpdates());
    updater_->checkForUpdates();
    updater_->start();
    EXPECT_FALSE(updater_->canCheckForUpdates());
}

TEST_F(FrameworkUpdaterTest, ItCannotCheckWithAFrameworkThatMakesNoController) {
    framework_.makesNoController = true;
    make();
    updater_->start();
    EXPECT_FALSE(updater_->canCheckForUpdates());
    EXPECT_FALSE(updater_->automaticallyChecksForUpdates());
    updater_->setAutomaticallyChecksForUpdates(true);
    updater_->checkForUpdates();
    EXPECT_EQ(framework_.checks, 0);
    updater_.reset();
    EXPECT_EQ(framework_.wrongRemovals, 0);
}

TEST_F(FrameworkUpdaterTest, TheControllerIsMadeOnceWithTheFirstQuestionAndStartsByItself) {
    make();
    EXPECT_EQ(framework_.controllers, 0);
    updater_->start();
    EXPECT_EQ(framework_.controllers, 1);
    EXPECT_TRUE(framework_.startsUpdater);
    EXPECT_FALSE(framework_.hasDelegates);
    updater_->start();
    updater_->checkForUpdates();
    EXPECT_TRUE(updater_->automaticallyChecksForUpdates());
    EXPECT_EQ(framework_.controllers, 1);
}

TEST_F(FrameworkUpdaterTest, OneThatWasNeverAskedLeavesTheFrameworkAlone) {
    make();
    updater_.reset();
    EXPECT_EQ(framework_.controllers, 0);
    EXPECT_EQ(framework_.wrongRemovals, 0);
}

TEST_F(FrameworkUpdaterTest, WhatTheFrameworkChangesByItselfIsReadAnewAndTold) {
    make();
    updater_->start();
    framework_.switchTo(false);
    EXPECT_EQ(changes_, 1);
    EXPECT_FALSE(updater_->automaticallyChecksForUpdates());
    framework_.canCheck = false;
    EXPECT_FALSE(updater_->canCheckForUpdates());
    framework_.endCheck();
    EXPECT_EQ(changes_, 2);
    EXPECT_TRUE(updater_->canCheckForUpdates());
}

TEST_F(FrameworkUpdaterTest, TheSwitchIsTheFrameworksOwn) {
    make();
    updater_->setAutomaticallyChecksForUpdates(false);
    EXPECT_FALSE(framework_.checksAutomatically);
    updater_->setAutomaticallyChecksForUpdates(true);
    EXPECT_TRUE(framework_.checksAutomatically);
}

TEST_F(FrameworkUpdaterTest, ItObservesBothAnswersAndStopsAtItsEnd) {
    make();
    updater_->start();
    EXPECT_THAT(framework_.observedKeys(),
                UnorderedElementsAre("canCheckForUpdates", "automaticallyChecksForUpdates"));
    updater_.reset();
    EXPECT_THAT(framework_.observedKeys(), IsEmpty());
    EXPECT_EQ(framework_.wrongRemovals, 0);
}

TEST_F(FrameworkUpdaterTest, WhatTheFrameworkFindsItShowsByItself) {
    make();
    updater_->checkForUpdates();
    framework_.endCheck();
    EXPECT_EQ(updater_->newerVersion(), std::nullopt);
    updater_->openPage();
    EXPECT_EQ(framework_.checks, 1);
}

} // namespace
} // namespace vesko::testing
