#pragma once
#include "background/Updater.h"
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <utility>

namespace vesko::testing {

/// What whoever looks for newer versions promises on every system. `System` makes one, and answers it:
///     std::shared_ptr<Updater> make();           // again after the first has ended: the next start
///     std::shared_ptr<Updater> makeWithNobody(); // where there is nobody to ask
///     void endCheck();                           // the check that is running ends
///     int checks();                              // how many have begun
template <class System> class UpdaterContract : public ::testing::Test {
protected:
    void make() { listenTo(system.make()); }
    void makeWithNobody() { listenTo(system.makeWithNobody()); }

    System system;
    std::shared_ptr<Updater> updater;
    int told = 0;
    std::function<void()> whenTold;

private:
    void listenTo(std::shared_ptr<Updater> made) {
        updater = std::move(made);
        told_ = updater->changes.subscribe([this] {
            ++told;
            if (whenTold) whenTold();
        });
    }

    ChangeSource::Subscription told_;
};
TYPED_TEST_SUITE_P(UpdaterContract);

TYPED_TEST_P(UpdaterContract, WithNobodyToAskItCannotCheckAndItsSwitchStaysOff) {
    this->makeWithNobody();
    EXPECT_FALSE(this->updater->canCheckForUpdates());
    EXPECT_FALSE(this->updater->automaticallyChecksForUpdates());
    this->updater->start();
    this->updater->setAutomaticallyChecksForUpdates(true);
    this->updater->checkForUpdates();
    this->updater->openPage();
    EXPECT_FALSE(this->updater->canCheckForUpdates());
    EXPECT_FALSE(this->updater->automaticallyChecksForUpdates());
    EXPECT_EQ(this->updater->newerVersion(), std::nullopt);
    EXPECT_EQ(this->system.checks(), 0);
    EXPECT_EQ(this->told, 0);
}

TYPED_TEST_P(UpdaterContract, ItCannotCheckWhileACheckIsRunningAndTellsBoth) {
    this->make();
    EXPECT_TRUE(this->updater->canCheckForUpdates());
    this->updater->checkForUpdates();
    EXPECT_EQ(this->system.checks(), 1);
    EXPECT_FALSE(this->updater->canCheckForUpdates());
    EXPECT_EQ(this->told, 1);
    this->system.endCheck();
    EXPECT_TRUE(this->updater->canCheckForUpdates());
    EXPECT_EQ(this->told, 2);
    this->updater->checkForUpdates();
    EXPECT_EQ(this->system.checks(), 2);
}

TYPED_TEST_P(UpdaterContract, AskingForACheckWhileOneIsRunningDoesNothing) {
    this->make();
    this->updater->checkForUpdates();
    this->updater->checkForUpdates();
    this->updater->checkForUpdates();
    EXPECT_EQ(this->system.checks(), 1);
    this->system.endCheck();
    EXPECT_TRUE(this->updater->canCheckForUpdates());
}

TYPED_TEST_P(UpdaterContract, TheSwitchIsTurnedToldAndKeptForTheNextStart) {
    this->make();
    EXPECT_TRUE(this->updater->automaticallyChecksForUpdates());
    this->updater->setAutomaticallyChecksForUpdates(false);
    EXPECT_FALSE(this->updater->automaticallyChecksForUpdates());
    EXPECT_EQ(this->told, 1);
    this->updater.reset();
    this->make();
    EXPECT_FALSE(this->updater->automaticallyChecksForUpdates());
    this->updater->setAutomaticallyChecksForUpdates(true);
    EXPECT_TRUE(this->updater->automaticallyChecksForUpdates());
    EXPECT_EQ(this->told, 2);
}

TYPED_TEST_P(UpdaterContract, StartingTwiceIsStartingOnce) {
    this->make();
    this->updater->start();
    const int checks = this->system.checks();
    this->updater->start();
    EXPECT_EQ(this->system.checks(), checks);
    this->system.endCheck();
    EXPECT_TRUE(this->updater->canCheckForUpdates());
}

TYPED_TEST_P(UpdaterContract, ThereIsNoPageToOpenBeforeACheckHasFoundOne) {
    this->make();
    EXPECT_EQ(this->updater->newerVersion(), std::nullopt);
    this->updater->openPage();
    EXPECT_EQ(this->system.checks(), 0);
}

TYPED_TEST_P(UpdaterContract, NothingIsToldAfterItsEnd) {
    this->make();
    this->updater->checkForUpdates();
    EXPECT_EQ(this->system.checks(), 1);
    this->updater.reset();
    const int told = this->told;
    this->system.endCheck();
    EXPECT_EQ(this->told, told);
}

TYPED_TEST_P(UpdaterContract, ItMayEndWhileItTells) {
    this->make();
    this->updater->checkForUpdates();
    EXPECT_EQ(this->system.checks(), 1);
    this->whenTold = [this] { this->updater.reset(); };
    this->system.endCheck();
    EXPECT_FALSE(this->updater);
    EXPECT_EQ(this->told, 2);
}

REGISTER_TYPED_TEST_SUITE_P(UpdaterContract, WithNobodyToAskItCannotCheckAndItsSwitchStaysOff,
                            ItCannotCheckWhileACheckIsRunningAndTellsBoth,
                            AskingForACheckWhileOneIsRunningDoesNothing,
                            TheSwitchIsTurnedToldAndKeptForTheNextStart, StartingTwiceIsStartingOnce,
                            ThereIsNoPageToOpenBeforeACheckHasFoundOne, NothingIsToldAfterItsEnd,
                            ItMayEndWhileItTells);

} // namespace vesko::testing
