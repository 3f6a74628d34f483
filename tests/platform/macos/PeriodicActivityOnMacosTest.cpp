#include "platform/PeriodicActivityContract.h"
#include "platform/macos/FakeActivities.h"
#include "platform/macos/FakeSystem.h"
#include <gmock/gmock.h>

namespace vesko::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;

std::unique_ptr<PeriodicActivity> scheduled(const PeriodicActivitySettings& settings) {
    return platformPeriodicActivity({})(settings);
}

/// The system's scheduler, on a time of the test's own.
class Scheduler {
public:
    std::unique_ptr<PeriodicActivity> make(const PeriodicActivitySettings& settings) {
        return scheduled(settings);
    }
    void pass(std::chrono::seconds time) { fakeActivities().pass(time); }

private:
    FakeSystem system_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(OnMacos, PeriodicActivityContract, Scheduler);

class PeriodicActivityOnMacos : public ::testing::Test {
protected:
    FakeSystem system_;
};

TEST_F(PeriodicActivityOnMacos, TheSchedulerGetsWhatWasSaid) {
    const auto one = scheduled({"org.example.scan", true, 6h, 30min});
    const auto other = scheduled({"org.example.once", false, 90s, 0s});
    const auto& made = fakeActivities().all;
    ASSERT_EQ(made.size(), 2u);
    EXPECT_EQ(made[0]->identifier, "org.example.scan");
    EXPECT_TRUE(made[0]->repeats);
    EXPECT_EQ(made[0]->interval, 21'600);
    EXPECT_EQ(made[0]->tolerance, 1'800);
    EXPECT_FALSE(made[0]->hasOwnQuality);
    EXPECT_EQ(made[1]->identifier, "org.example.once");
    EXPECT_FALSE(made[1]->repeats);
    EXPECT_EQ(made[1]->interval, 90);
    EXPECT_EQ(made[1]->tolerance, 0);
}

TEST_F(PeriodicActivityOnMacos, ATurnIsFinishedOnceAndNeverPutOff) {
    constexpr long finished = 1;
    const auto activity = scheduled({"org.example.scan", true, 6h, 0s});
    PeriodicActivity::Finished finish;
    activity->schedule([&](PeriodicActivity::Finished given) { finish = std::move(given); });
    fakeActivities().pass(6h);
    ASSERT_TRUE(finish);
    EXPECT_THAT(fakeActivities().all[0]->results, ElementsAre());
    finish();
    EXPECT_THAT(fakeActivities().all[0]->results, ElementsAre(finished));
    fakeActivities().pass(6h);
    EXPECT_THAT(fakeActivities().all[0]->results, ElementsAre(finished));
    finish();
    EXPECT_THAT(fakeActivities().all[0]->results, ElementsAre(finished, finished));
}

} // namespace
} // namespace vesko::testing
