#include "FinderCommand.h"
#include "platform/macos/FakeMachine.h"
#include "platform/posix/BackgroundPriority.h"
#include "platform/posix/ContinuousTime.h"
#include "platform/posix/DiskAccess.h"
#include <chrono>
#include <gtest/gtest.h>
#include <sys/qos.h>
#include <unistd.h>

namespace vesko {
namespace {

using namespace std::chrono_literals;
using testing::fakeMachine;
using Priorities = std::vector<std::pair<unsigned, int>>;

class MachineOnMacos : public ::testing::Test {
protected:
    MachineOnMacos() { fakeMachine() = {}; }
};

TEST_F(MachineOnMacos, TheTimeIsThatOfTheClockThatCountsSleep) {
    fakeMachine().time = {.tv_sec = 90'000, .tv_nsec = 999'999'999};
    EXPECT_EQ(continuousNow().time_since_epoch(), 90'000s + 999'999'999ns);
    EXPECT_EQ(fakeMachine().askedClock, CLOCK_MONOTONIC_RAW);
}

TEST_F(MachineOnMacos, BackgroundWorkIsOfTheClassUtility) {
    workInTheBackground();
    EXPECT_EQ(fakeMachine().priorities, (Priorities{{QOS_CLASS_UTILITY, 0}}));
}

TEST_F(MachineOnMacos, AThreadThatMayNotChangeItsClassStaysAsItIs) {
    fakeMachine().refusesPriorities = true;
    workInTheBackground();
    EXPECT_EQ(fakeMachine().priorities.size(), 1U) << "asked once, and no more";
}

TEST_F(MachineOnMacos, WhoReadsThePrivacyDatabaseHasFullDiskAccess) {
    const std::string database = "/Library/Application Support/com.apple.TCC/TCC.db";
    EXPECT_FALSE(hasFullDiskAccess());
    fakeMachine().readable = {"/Library/Application Support/com.apple.TCC"};
    EXPECT_FALSE(hasFullDiskAccess());
    fakeMachine().readable = {database};
    EXPECT_TRUE(hasFullDiskAccess());
    EXPECT_EQ(fakeMachine().askedAccess, std::pair(database, R_OK));
}

TEST_F(MachineOnMacos, TheFinderIsGivenThePathAsItIs) {
    const FinderCommand command = finderCommand(FileURL("/Users/ana/-R \"maçã\" %20 $HOME"));
    EXPECT_EQ(command.program, "/usr/bin/open");
    EXPECT_EQ(command.arguments, (std::vector<std::string>{"-R", "/Users/ana/-R \"maçã\" %20 $HOME"}));
}

} // namespace
} // namespace vesko
