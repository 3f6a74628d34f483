#include "background/UnavailableUpdater.h"
#include <gtest/gtest.h>

namespace vesko {
namespace {

TEST(UnavailableUpdater, CannotCheckAndItsSwitchStaysOff) {
    UnavailableUpdater updater;
    int told = 0;
    const auto subscription = updater.changes.subscribe([&] { ++told; });
    EXPECT_FALSE(updater.canCheckForUpdates());
    updater.setAutomaticallyChecksForUpdates(true);
    updater.checkForUpdates();
    updater.openPage();
    EXPECT_FALSE(updater.automaticallyChecksForUpdates());
    EXPECT_EQ(updater.newerVersion(), std::nullopt);
    EXPECT_EQ(told, 0);
}

} // namespace
} // namespace vesko
