#include "background/BackgroundScanCoordinator.h"

#include "background/FakeActivity.h"
#include "orchestration/CleanupFixture.h"

namespace vesko::testing {
namespace {

using namespace std::chrono_literals;

class BackgroundScanCoordination : public CleanupTest {
protected:
    BackgroundScanCoordination() { make(); }

    void attach() { coordinator->attach(model, *scheduler); }

    FakePlatform platform;
    std::shared_ptr<BackgroundScanScheduler> scheduler = std::make_shared<BackgroundScanScheduler>(
        BackgroundScanSchedulerParts{context, platform.maker(), [] { return true; }, [] { return true; }});
    std::shared_ptr<BackgroundScanCoordinator> coordinator = std::make_shared<BackgroundScanCoordinator>();
};

TEST_F(BackgroundScanCoordination, AttachingSchedulesOnce) {
    attach();
    EXPECT_EQ(coordinator->viewModel.lock(), model);
    EXPECT_EQ(platform.scheduled, 1);
    attach();
    EXPECT_EQ(platform.scheduled, 1);
}

TEST_F(BackgroundScanCoordination, ATurnLooksAgainAtWhatIsListed) {
    finds({group("cache.npm", {item("/h/npm", 100)})});
    scan();
    attach();
    probes.clear();
    const auto gate = findsBehindAGate(group("cache.npm", {item("/h/npm", 200)}));
    platform.fire();
    ASSERT_TRUE(loop.waitFor([&] { return modes.size() == 2; }));
    loop.drain();
    EXPECT_EQ(modes.back(), ScanMode::validation);
    EXPECT_EQ(idsOf(*model->groups), std::vector<std::string>{"cache.npm"}) << "the list is not emptied";
    EXPECT_TRUE(coordinator->isScanActive());
    EXPECT_EQ(platform.finished, 0);
    gate->open();
    ASSERT_TRUE(loop.waitFor([&] { return platform.finished == 1; }));
    EXPECT_EQ(*model->foundTotalBytes, 200);
    EXPECT_FALSE(coordinator->isScanActive());
}

TEST_F(BackgroundScanCoordination, ATurnDuringThePersonsScanLeavesItAlone) {
    attach();
    const auto gate = findsBehindAGate(group("cache.npm", {item("/h/npm", 100)}));
    const TaskHandle<void> task = beginScan();
    ASSERT_TRUE(loop.waitFor([&] { return model->scanProgress->has_value(); }));
    platform.fire();
    loop.drain();
    EXPECT_EQ(platform.finished, 1);
    EXPECT_EQ(modes, std::vector<ScanMode>{ScanMode::full});
    EXPECT_EQ(*model->phase, CleanupPhase::scanning());
    EXPECT_FALSE(task.done());
    gate->open();
    finish(task);
    EXPECT_EQ(idsOf(*model->groups), std::vector<std::string>{"cache.npm"});
    EXPECT_FALSE(*model->scanWasPartial);
}

TEST_F(BackgroundScanCoordination, ATurnDuringADeletionIsSkipped) {
    attach();
    model->phase = CleanupPhase::cleaning();
    EXPECT_TRUE(coordinator->isScanActive());
    platform.fire();
    loop.drain();
    EXPECT_EQ(platform.finished, 1);
    finish(spawn(context, [this] { return coordinator->runScan(); }));
    EXPECT_TRUE(modes.empty());
    model->phase = CleanupPhase::idle();
}

TEST_F(BackgroundScanCoordination, AFailedDeletionIsNoReasonToWait) {
    model->phase = CleanupPhase::error("no");
    attach();
    EXPECT_FALSE(coordinator->isScanActive());
}

TEST_F(BackgroundScanCoordination, WithoutTheViewModelATurnIsFinishedAtOnce) {
    attach();
    model.reset();
    ASSERT_TRUE(coordinator->viewModel.expired()) << "the coordinator keeps nothing alive";
    EXPECT_FALSE(coordinator->isScanActive());
    platform.fire();
    loop.drain();
    EXPECT_EQ(platform.finished, 1);
    EXPECT_TRUE(modes.empty());
}

TEST_F(BackgroundScanCoordination, AScanMayOutlastItsTurn) {
    attach();
    const auto gate = findsBehindAGate(group("cache.npm", {item("/h/npm", 100)}));
    platform.fire();
    ASSERT_TRUE(loop.waitFor([&] { return model->scanProgress->has_value(); }));
    loop.advance(300s);
    EXPECT_EQ(platform.finished, 1);
    EXPECT_EQ(*model->phase, CleanupPhase::scanning()) << "the scan has a task of its own";
    gate->open();
    ASSERT_TRUE(loop.waitFor([&] { return *model->phase == CleanupPhase::idle(); }));
    EXPECT_EQ(idsOf(*model->groups), std::vector<std::string>{"cache.npm"});
    EXPECT_FALSE(*model->scanWasPartial);
    EXPECT_EQ(platform.finished, 1);
}

TEST_F(BackgroundScanCoordination, ThePersonsPressRightAfterATurnFindsTheScanRunning) {
    attach();
    const auto gate = findsBehindAGate(group("cache.npm", {item("/h/npm", 100)}));
    platform.fire();
    ASSERT_TRUE(loop.waitFor([&] { return modes.size() == 1; }));
    finish(beginScan());
    EXPECT_EQ(modes, std::vector<ScanMode>{ScanMode::validation});
    gate->open();
    ASSERT_TRUE(loop.waitFor([&] { return platform.finished == 1; }));
}

} // namespace
} // namespace vesko::testing
