#include "orchestration/CleanupFixture.h"

namespace vesko::testing {
namespace {

using Storage = NotificationPreferencesStorage;
using enum NotificationAlertKind;
using Kinds = std::vector<NotificationAlertKind>;

/// Writes down what it is asked to show; waits in each delivery while it is told to.
class RecordingNotifications final : public NotificationDelivering {
public:
    struct Delivered {
        NotificationAlertKind kind;
        std::int64_t availableBytes;
        std::int64_t recoverableBytes;
    };

    Task<bool> requestAuthorization() override { co_return true; }
    Task<void> deliver(NotificationAlertKind kind, std::int64_t availableBytes,
                       std::int64_t recoverableBytes) override {
        delivered.push_back({kind, availableBytes, recoverableBytes});
        if (onDeliver) onDeliver();
        if (wait > Duration::zero()) co_await sleepFor(wait);
    }

    Kinds kinds() const {
        Kinds found;
        for (const Delivered& each : delivered) found.push_back(each.kind);
        return found;
    }

    std::vector<Delivered> delivered;
    std::function<void()> onDeliver;
    Duration wait{};
};

class CleanupAlerts : public CleanupTest {
protected:
    CleanupAlerts() {
        parts.notificationService = notifications;
        // Amounts as large as in life, with all three kinds on.
        prefer({true, 10'000, true, 500, true});
    }

    void prefer(const NotificationPreferences& preferences) {
        Storage::savePreferences(preferences, *defaults);
    }
    /// A first scan that finds as much as this, whose notifications are forgotten.
    void begin(std::vector<CleanupGroup> groups) {
        make();
        finds(std::move(groups));
        scan();
        notifications->delivered.clear();
        defaults->remove(Storage::lastFiredKey);
        defaults->changes = 0;
    }

    std::shared_ptr<RecordingNotifications> notifications = std::make_shared<RecordingNotifications>();
};

TEST_F(CleanupAlerts, AFullScanCountsAllItFoundAsNew) {
    make();
    finds({group("cache.npm", {item("/h/npm", 501)})});
    scan();
    EXPECT_EQ(notifications->kinds(), (Kinds{largeNewOpportunity, scanCompleted}));
    notifications->delivered.clear();
    dates.set(dates.now() + std::chrono::hours(24));
    scan();
    EXPECT_EQ(notifications->kinds(), (Kinds{largeNewOpportunity, scanCompleted})) << "the list began empty";
}

TEST_F(CleanupAlerts, AFullScanWithoutAGroupHasNotGrown) {
    make();
    findsNothing("cache.npm");
    scan();
    EXPECT_EQ(notifications->kinds(), Kinds());
    EXPECT_EQ(defaults->data(Storage::lastFiredKey), std::nullopt);
}

TEST_F(CleanupAlerts, AnOpportunityOfExactlyTheThresholdIsNotLarge) {
    make();
    finds({group("cache.npm", {item("/h/npm", 500)})});
    scan();
    EXPECT_EQ(notifications->kinds(), Kinds{scanCompleted});
}

TEST_F(CleanupAlerts, SpaceOfExactlyTheThresholdIsNotLow) {
    volume->availableBytes = 10'000;
    make();
    findsNothing("cache.npm");
    scan();
    EXPECT_EQ(notifications->kinds(), Kinds());
    volume->availableBytes = 9'999;
    scan();
    EXPECT_EQ(notifications->kinds(), Kinds{lowSpace});
}

TEST_F(CleanupAlerts, AValidationScanCountsWhatItAddedSinceItBegan) {
    begin({group("cache.npm", {item("/h/npm", 1000)})});
    scan(ScanMode::validation);
    EXPECT_EQ(notifications->kinds(), Kinds()) << "nothing new";
    finds({group("cache.npm", {item("/h/npm", 1500)})});
    scan(ScanMode::validation);
    EXPECT_EQ(notifications->kinds(), Kinds{scanCompleted});
    finds({group("cache.npm", {item("/h/npm", 2001)})});
    scan(ScanMode::validation);
    EXPECT_EQ(notifications->kinds(), (Kinds{scanCompleted, largeNewOpportunity}));
    EXPECT_EQ(notifications->delivered.back().recoverableBytes, 2001) << "the whole, not what was added";
}

TEST_F(CleanupAlerts, AValidationScanThatOnlyLosesGroupsTellsOfLowSpaceAtMost) {
    begin({group("cache.npm", {item("/h/npm", 1000)}), group("trash", {item("/h/t", 5000)})});
    probes.clear();
    finds({group("cache.npm", {item("/h/npm", 1000)})});
    findsNothing("trash");
    scan(ScanMode::validation);
    EXPECT_EQ(idsOf(*model->groups), std::vector<std::string>{"cache.npm"});
    EXPECT_EQ(notifications->kinds(), Kinds());
    probes.clear();
    findsNothing("cache.npm");
    volume->availableBytes = 0;
    scan(ScanMode::validation);
    EXPECT_EQ(notifications->kinds(), Kinds{lowSpace});
}

TEST_F(CleanupAlerts, EachIsDeliveredInTurnWithBothFigures) {
    volume->availableBytes = 7;
    make();
    finds({group("cache.npm", {item("/h/npm", 800)})});
    scan();
    ASSERT_EQ(notifications->kinds(), (Kinds{lowSpace, largeNewOpportunity, scanCompleted}));
    for (const auto& each : notifications->delivered) {
        EXPECT_EQ(each.availableBytes, 7);
        EXPECT_EQ(each.recoverableBytes, 800);
    }
}

TEST_F(CleanupAlerts, TheScanLastsUntilThePlatformHasAnswered) {
    volume->availableBytes = 7;
    notifications->wait = std::chrono::seconds(2);
    make();
    finds({group("cache.npm", {item("/h/npm", 800)})});
    const TaskHandle<void> task = beginScan();
    ASSERT_TRUE(loop.waitFor([&] { return notifications->delivered.size() == 1; }));
    EXPECT_EQ(*model->phase, CleanupPhase::scanning());
    loop.advance(std::chrono::seconds(2));
    EXPECT_EQ(notifications->delivered.size(), 2u);
    EXPECT_EQ(defaults->data(Storage::lastFiredKey), std::nullopt) << "noted when all are out";
    loop.advance(std::chrono::seconds(4));
    EXPECT_TRUE(task.done());
    EXPECT_EQ(*model->phase, CleanupPhase::idle());
    EXPECT_EQ(Storage::loadLastFired(*defaults).size(), 3u);
}

TEST_F(CleanupAlerts, TheMomentIsNotedForWhatWasRaisedAlone) {
    const Date earlier = dates.now() - std::chrono::hours(30);
    Storage::saveLastFired({{lowSpace, earlier}}, *defaults);
    make();
    finds({group("cache.npm", {item("/h/npm", 800)})});
    scan();
    EXPECT_EQ(Storage::loadLastFired(*defaults),
              (Storage::LastFired{
                  {lowSpace, earlier}, {largeNewOpportunity, dates.now()}, {scanCompleted, dates.now()}}));
}

TEST_F(CleanupAlerts, WhatWasRaisedRestsFor24Hours) {
    make();
    finds({group("cache.npm", {item("/h/npm", 800)})});
    scan();
    ASSERT_EQ(notifications->delivered.size(), 2u);
    dates.set(dates.now() + std::chrono::hours(24) - std::chrono::microseconds(1));
    scan();
    EXPECT_EQ(notifications->delivered.size(), 2u);
    dates.set(dates.now() + std::chrono::microseconds(1));
    scan();
    EXPECT_EQ(notifications->delivered.size(), 4u) << "exactly 24 hours later";
}

TEST_F(CleanupAlerts, TheRestOutlastsTheProgram) {
    Storage::saveLastFired({{scanCompleted, dates.now()}}, *defaults);
    make();
    finds({group("cache.npm", {item("/h/npm", 800)})});
    scan();
    EXPECT_EQ(notifications->kinds(), Kinds{largeNewOpportunity});
}

TEST_F(CleanupAlerts, ANotificationThatCouldNotBeShownCountsAsRaised) {
    parts.notificationService = std::make_shared<SilentNotificationService>();
    make();
    finds({group("cache.npm", {item("/h/npm", 400)})});
    scan();
    EXPECT_EQ(Storage::loadLastFired(*defaults), (Storage::LastFired{{scanCompleted, dates.now()}}));
}

TEST_F(CleanupAlerts, WithAllThreeOffNothingIsWritten) {
    prefer({false, 10'000, false, 500, false});
    volume->availableBytes = 0;
    make();
    defaults->changes = 0;
    finds({group("cache.npm", {item("/h/npm", 8000)})});
    scan();
    EXPECT_EQ(idsOf(*model->groups), std::vector<std::string>{"cache.npm"});
    EXPECT_EQ(notifications->kinds(), Kinds());
    EXPECT_EQ(defaults->changes, 0);
}

TEST_F(CleanupAlerts, WithoutPreferencesTheirDefaultsHold) {
    defaults->remove(Storage::preferencesKey);
    volume->availableBytes = 9'999'999'999;
    make();
    finds({group("cache.npm", {item("/h/npm", 5'000'000'000)})});
    scan();
    EXPECT_EQ(notifications->kinds(), Kinds{lowSpace});
}

TEST_F(CleanupAlerts, PreferencesAreThoseOfTheMomentTheScanEnds) {
    volume->availableBytes = 0;
    make();
    const auto gate = findsBehindAGate(group("cache.npm", {item("/h/npm", 8000)}));
    const TaskHandle<void> task = beginScan();
    ASSERT_TRUE(loop.waitFor([&] { return model->scanProgress->has_value(); }));
    prefer({false, 10'000, false, 500, true});
    gate->open();
    finish(task);
    EXPECT_EQ(notifications->kinds(), Kinds{scanCompleted});
}

TEST_F(CleanupAlerts, ACancelledScanRaisesNothing) {
    volume->availableBytes = 0;
    make();
    const auto gate = findsBehindAGate(group("cache.npm", {item("/h/npm", 8000)}));
    const TaskHandle<void> task = beginScan();
    ASSERT_TRUE(loop.waitFor([&] { return model->scanProgress->has_value(); }));
    defaults->changes = 0;
    model->cancelScan();
    gate->open();
    finish(task);
    EXPECT_EQ(notifications->kinds(), Kinds());
    EXPECT_EQ(defaults->changes, 0);
}

TEST_F(CleanupAlerts, AScanThatIsCancelledWhileTheVolumeIsReadRaisesNothing) {
    volume->availableBytes = 0;
    volume->gate = std::make_shared<Gate>();
    make();
    finds({group("cache.npm", {item("/h/npm", 8000)})});
    const TaskHandle<void> task = beginScan();
    ASSERT_TRUE(loop.waitFor([&] { return model->lastScanDate->has_value(); }));
    loop.drain();
    EXPECT_EQ(*model->phase, CleanupPhase::scanning()) << "the loop is free while the volume answers";
    model->cancelScan();
    volume->gate->open();
    finish(task);
    EXPECT_EQ(notifications->kinds(), Kinds());
}

TEST_F(CleanupAlerts, ADevelopmentHostRaisesNothing) {
    volume->availableBytes = 0;
    make();
    defaults->changes = 0;
    finds({group("cache.npm", {item("/h/npm", 8000)})});
    {
        const ScopedEnvironment host("XCODE_RUNNING_FOR_PLAYGROUNDS", "1");
        scan();
    }
    {
        const ScopedEnvironment host("XCTestConfigurationFilePath", "");
        scan();
    }
    EXPECT_EQ(modes.size(), 2u);
    EXPECT_EQ(notifications->kinds(), Kinds());
    EXPECT_EQ(defaults->changes, 0);
    scan();
    EXPECT_EQ(notifications->kinds(), (Kinds{lowSpace, largeNewOpportunity, scanCompleted}));
}

} // namespace
} // namespace vesko::testing
