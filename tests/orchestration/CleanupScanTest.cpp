#include "orchestration/CleanupFixture.h"

namespace vesko::testing {
namespace {

using CleanupScan = CleanupTest;

/// Holds the worker that judges a list, which asks for the report's date, until the gate opens.
class DatesBehindAGate final : public DateSource {
public:
    Date now() const override {
        gate.wait();
        return {};
    }
    mutable Gate gate;
};

TEST_F(CleanupScan, AFullScanShowsWhatItFoundAndSelectsWhatIsSafe) {
    make();
    finds({group("cache.npm", {item("/h/npm", 100)}),
           group("trash", {item("/h/.Trash/x", 300)}, Safety::revisar)});
    scan();
    EXPECT_EQ(idsOf(*model->groups), (std::vector<std::string>{"trash", "cache.npm"}));
    EXPECT_EQ(*model->foundTotalBytes, 400);
    EXPECT_EQ(*model->indexedBytes, 400);
    EXPECT_EQ(*model->selectedItemIDs, urls({"/h/npm"}));
    EXPECT_EQ(*model->phase, CleanupPhase::idle());
    EXPECT_EQ(*model->scanPhase, ScanPhase::idle);
    EXPECT_FALSE(model->scanProgress->has_value());
    EXPECT_FALSE(*model->scanWasPartial);
    EXPECT_EQ(*model->lastScanDate, dates.now());
    const auto snapshot = saved();
    ASSERT_TRUE(snapshot);
    EXPECT_EQ(idsOf(snapshot->groups), idsOf(*model->groups));
    EXPECT_EQ(snapshot->foundTotalBytes, 400);
}

TEST_F(CleanupScan, AScanWhileSomethingIsDeletedDoesNothing) {
    make();
    model->groups = {group("cache.npm", {item("/h/npm", 100)})};
    model->phase = CleanupPhase::cleaning();
    model->cleanupMessage = "kept";
    scan();
    EXPECT_TRUE(modes.empty());
    EXPECT_EQ(*model->phase, CleanupPhase::cleaning());
    EXPECT_EQ(*model->cleanupMessage, "kept");
    EXPECT_EQ(model->groups->size(), 1u);
    model->phase = CleanupPhase::idle();
}

TEST_F(CleanupScan, ASecondPressDoesNothing) {
    make();
    const auto gate = findsBehindAGate(group("cache.npm", {item("/h/npm", 100)}));
    const TaskHandle<void> first = beginScan();
    ASSERT_TRUE(loop.waitFor([&] { return model->scanProgress->has_value(); }));
    const TaskHandle<void> second = beginScan();
    loop.drain();
    EXPECT_TRUE(second.done());
    EXPECT_FALSE(first.done());
    EXPECT_EQ(modes.size(), 1u);
    EXPECT_TRUE(model->scanProgress->has_value());
    gate->open();
    finish(first);
    EXPECT_EQ(idsOf(*model->groups), std::vector<std::string>{"cache.npm"});
}

TEST_F(CleanupScan, ANewScanClearsTheMessages) {
    make();
    model->cleanupMessage = "old";
    model->reviewMessage = "old";
    model->phase = CleanupPhase::error("old");
    model->scanWasPartial = true;
    finds({});
    scan();
    EXPECT_FALSE(model->cleanupMessage->has_value());
    EXPECT_FALSE(model->reviewMessage->has_value());
    EXPECT_FALSE(*model->scanWasPartial);
    EXPECT_EQ(*model->phase, CleanupPhase::idle());
}

TEST_F(CleanupScan, AFullScanEmptiesTheListAtItsStart) {
    make();
    finds({group("cache.npm", {item("/h/npm", 100)})});
    scan();
    model->aiDiscoveredURLs = urls({"/h/npm"});
    model->pendingReviewCandidates = std::vector<ScanReviewCandidate>(1);
    probes.clear();
    const auto gate = findsBehindAGate(group("trash", {item("/h/t", 5)}));
    const TaskHandle<void> task = beginScan();
    ASSERT_TRUE(loop.waitFor([&] { return model->scanProgress->has_value(); }));
    EXPECT_TRUE(model->groups->empty());
    EXPECT_EQ(*model->foundTotalBytes, 0);
    EXPECT_EQ(*model->indexedBytes, 0);
    EXPECT_TRUE(model->aiDiscoveredURLs->empty());
    EXPECT_TRUE(model->pendingReviewCandidates->empty());
    EXPECT_EQ(*model->scanPhase, ScanPhase::scanning);
    gate->open();
    finish(task);
}

TEST_F(CleanupScan, AValidationScanOverAnEmptyListIsAFullScanThatEmptiesNothing) {
    make();
    finds({group("cache.npm", {item("/h/npm", 100)})});
    scan(ScanMode::validation);
    EXPECT_EQ(idsOf(*model->groups), std::vector<std::string>{"cache.npm"});
    EXPECT_EQ(*model->selectedItemIDs, urls({"/h/npm"}));
    EXPECT_EQ(*model->foundTotalBytes, 100);
}

TEST_F(CleanupScan, AProbeWithoutAGroupUpdatesTheProgressAlone) {
    make();
    maxConcurrency = 1;
    finds({group("cache.npm", {item("/h/npm", 100)})});
    findsNothing("cache.pnpm");
    const auto gate = findsBehindAGate(group("trash", {item("/h/t", 5)}));
    const TaskHandle<void> task = beginScan();
    ASSERT_TRUE(loop.waitFor(
        [&] { return model->scanProgress->has_value() && (*model->scanProgress)->directoriesVisited == 2; }));
    EXPECT_EQ((*model->scanProgress)->currentPath, "");
    EXPECT_EQ(idsOf(*model->groups), std::vector<std::string>{"cache.npm"});
    EXPECT_EQ(*model->foundTotalBytes, 100);
    EXPECT_EQ(*model->indexedBytes, 100);
    gate->open();
    finish(task);
}

TEST_F(CleanupScan, OnlyTheFirstStartedProbeMakesAProgress) {
    make();
    maxConcurrency = 1;
    finds({group("cache.npm", {item("/h/npm", 100)})});
    const auto gate = findsBehindAGate(group("trash", {item("/h/t", 5)}));
    std::vector<std::optional<ScanProgress>> seen;
    const auto watch = model->changes.subscribe([&] {
        if (seen.empty() || seen.back() != *model->scanProgress) seen.push_back(*model->scanProgress);
    });
    const TaskHandle<void> task = beginScan();
    // The second probe has been started by now: its start follows the first one's end at once.
    ASSERT_TRUE(loop.waitFor([&] { return !model->groups->empty(); }));
    gate->open();
    finish(task);
    ASSERT_GE(seen.size(), 4u);
    EXPECT_EQ(seen[0], std::nullopt);
    const ScanProgress atStart{probeTitle("cache.npm"), 0, 0, 0, 0};
    EXPECT_EQ(seen[1], atStart);
    EXPECT_EQ(seen[2]->directoriesVisited, 1);
    EXPECT_EQ(seen[3]->directoriesVisited, 2);
}

TEST_F(CleanupScan, AFullScanThatFindsNothingIsKept) {
    make();
    findsNothing("cache.npm");
    scan();
    EXPECT_TRUE(model->groups->empty());
    EXPECT_EQ(*model->foundTotalBytes, 0);
    EXPECT_EQ(*model->lastScanDate, dates.now());
    const auto snapshot = saved();
    ASSERT_TRUE(snapshot);
    EXPECT_TRUE(snapshot->groups.empty());
}

TEST_F(CleanupScan, TheListIsJudgedAfterEveryProbe) {
    make();
    finds(
        {group("discover.caches", {item("/h/Library/Caches/Yarn", 900), item("/h/Library/Caches/other", 5)}),
         group("cache.yarn", {item("/h/Library/Caches/Yarn", 900)})});
    const auto gate = findsBehindAGate(group("trash", {item("/h/t", 5)}));
    const TaskHandle<void> task = beginScan();
    ASSERT_TRUE(loop.waitFor([&] { return model->groups->size() == 2; }));
    EXPECT_EQ(idsOf(*model->groups), (std::vector<std::string>{"cache.yarn", "discover.caches"}));
    EXPECT_EQ(pathsOf((*model->groups)[1]), std::vector<std::string>{"/h/Library/Caches/other"});
    EXPECT_EQ(*model->foundTotalBytes, 905);
    EXPECT_EQ(*model->indexedBytes, 1805);
    gate->open();
    finish(task);
}

TEST_F(CleanupScan, DiscoveriesBecomeCandidatesOfTheReview) {
    make();
    const FileURL there = tree.file("c/there");
    finds({group("discover.caches", {item(there.path(), 900), item("/gone/x", 5)}),
           group("cache.yarn", {item("/h/yarn", 900)})});
    scan();
    ASSERT_EQ(model->pendingReviewCandidates->size(), 2u);
    EXPECT_EQ((*model->pendingReviewCandidates)[0].url, there);
    EXPECT_TRUE((*model->pendingReviewCandidates)[0].modificationDate);
    EXPECT_FALSE((*model->pendingReviewCandidates)[1].modificationDate);
}

TEST_F(CleanupScan, CancellingShowsAtOnceAndKeepsWhatWasFound) {
    make();
    maxConcurrency = 1;
    finds({group("cache.npm", {item("/h/npm", 100)})});
    const auto gate = findsBehindAGate(group("trash", {item("/h/t", 5)}));
    const TaskHandle<void> task = beginScan();
    ASSERT_TRUE(loop.waitFor([&] { return !model->groups->empty(); }));
    model->cancelScan();
    EXPECT_EQ(*model->phase, CleanupPhase::idle());
    EXPECT_EQ(*model->scanPhase, ScanPhase::idle);
    EXPECT_FALSE(model->scanProgress->has_value());
    finish(task);
    EXPECT_EQ(idsOf(*model->groups), std::vector<std::string>{"cache.npm"});
    EXPECT_TRUE(model->selectedItemIDs->empty());
    EXPECT_FALSE(model->lastScanDate->has_value());
    gate->open();
    EXPECT_FALSE(saved());
}

TEST_F(CleanupScan, ADeltaInHandWhenTheCancellationIsSeenMakesTheScanPartial) {
    DatesBehindAGate judging;
    parts.dates = &judging;
    make();
    finds({group("cache.npm", {item("/h/npm", 100)})});
    const TaskHandle<void> task = beginScan();
    ASSERT_TRUE(loop.waitFor([&] { return *model->indexedBytes == 100; }));
    model->cancelScan();
    EXPECT_FALSE(*model->scanWasPartial);
    judging.gate.open();
    finish(task);
    EXPECT_TRUE(*model->scanWasPartial);
    EXPECT_TRUE(model->groups->empty());
    EXPECT_EQ(*model->phase, CleanupPhase::idle());
    EXPECT_FALSE(saved());
}

TEST_F(CleanupScan, AScanCancelledBetweenTwoDeltasIsNotMarked) {
    make();
    const auto gate = findsBehindAGate(group("trash", {item("/h/t", 5)}));
    const TaskHandle<void> task = beginScan();
    ASSERT_TRUE(loop.waitFor([&] { return model->scanProgress->has_value(); }));
    loop.drain();
    model->cancelScan();
    finish(task);
    EXPECT_FALSE(*model->scanWasPartial);
    gate->open();
}

TEST_F(CleanupScan, ACancelledScanLeavesTheNextOneAlone) {
    DatesBehindAGate judging;
    parts.dates = &judging;
    make();
    finds({group("cache.pip", {item("/h/pip", 100)})});
    const TaskHandle<void> first = beginScan();
    ASSERT_TRUE(loop.waitFor([&] { return *model->indexedBytes == 100; }));
    model->cancelScan();
    probes.clear();
    const auto probing = findsBehindAGate(group("cache.npm", {item("/h/npm", 7)}));
    const TaskHandle<void> next = beginScan();
    ASSERT_TRUE(loop.waitFor([&] { return model->scanProgress->has_value(); }));
    ASSERT_FALSE(first.done());
    judging.gate.open();
    finish(first);
    EXPECT_EQ(*model->phase, CleanupPhase::scanning());
    EXPECT_EQ(*model->scanPhase, ScanPhase::scanning);
    EXPECT_FALSE(*model->scanWasPartial);
    probing->open();
    finish(next);
    EXPECT_EQ(idsOf(*model->groups), std::vector<std::string>{"cache.npm"});
    EXPECT_EQ(*model->phase, CleanupPhase::idle());
}

TEST_F(CleanupScan, ACancelledScanThatWakesLateDoesNotEndADeletion) {
    DatesBehindAGate judging;
    parts.dates = &judging;
    make();
    finds({group("cache.pip", {item("/h/pip", 100)})});
    const TaskHandle<void> task = beginScan();
    ASSERT_TRUE(loop.waitFor([&] { return *model->indexedBytes == 100; }));
    model->cancelScan();
    model->phase = CleanupPhase::cleaning();
    judging.gate.open();
    finish(task);
    EXPECT_EQ(*model->phase, CleanupPhase::cleaning());
    EXPECT_TRUE(model->groups->empty());
    EXPECT_TRUE(*model->scanWasPartial);
    model->phase = CleanupPhase::idle();
}

TEST_F(CleanupScan, CancellingAfterTheReportKeepsItAndSelectsNothing) {
    make();
    finds({group("cache.npm", {item("/h/npm", 100)})});
    const TaskHandle<void> task = beginScan();
    const auto watch = model->changes.subscribe([&] {
        if (model->lastScanDate->has_value()) model->cancelScan();
    });
    finish(task);
    EXPECT_EQ(*model->lastScanDate, dates.now());
    EXPECT_EQ(idsOf(*model->groups), std::vector<std::string>{"cache.npm"});
    EXPECT_TRUE(model->selectedItemIDs->empty());
    EXPECT_FALSE(*model->scanWasPartial);
    EXPECT_EQ(*model->phase, CleanupPhase::idle());
    EXPECT_TRUE(saved());
}

TEST_F(CleanupScan, TheScanPhasesFollowOneAnother) {
    make();
    finds({group("cache.npm", {item("/h/npm", 100)})});
    std::vector<ScanPhase> seen{*model->scanPhase};
    const auto watch = model->changes.subscribe([&] {
        if (seen.back() != *model->scanPhase) seen.push_back(*model->scanPhase);
    });
    scan();
    EXPECT_EQ(seen, (std::vector<ScanPhase>{ScanPhase::idle, ScanPhase::scanning, ScanPhase::finalizing,
                                            ScanPhase::idle}));
}

TEST_F(CleanupScan, TheProgramsEndLeavesThePhaseIdle) {
    make();
    const auto gate = findsBehindAGate(group("trash", {item("/h/t", 5)}));
    const TaskHandle<void> task = beginScan();
    ASSERT_TRUE(loop.waitFor([&] { return model->scanProgress->has_value(); }));
    registry.cancelAll();
    gate->open();
    finish(task);
    EXPECT_EQ(*model->phase, CleanupPhase::idle());
    EXPECT_EQ(*model->scanPhase, ScanPhase::idle);
    EXPECT_TRUE(model->selectedItemIDs->empty());
}

TEST_F(CleanupScan, TheFirstOfEqualGroupsIsTheLargest) {
    make();
    EXPECT_EQ(model->largestGroupID(), std::nullopt);
    model->groups = {group("trash", {item("/a", 5)}), group("cache.npm", {item("/b", 9)}),
                     group("cache.pnpm", {item("/c", 4), item("/d", 5)})};
    EXPECT_EQ(model->largestGroupID(), "cache.npm");
    EXPECT_EQ(model->recoverableBytes(), 23);
}

TEST_F(CleanupScan, ADevelopmentHostBeginsWithNothing) {
    make();
    finds({group("cache.npm", {item("/h/npm", 100)})});
    scan();
    ASSERT_TRUE(saved());
    tree.file("state/demoted-paths.json", "{}");
    const ScopedEnvironment host("XCODE_RUNNING_FOR_PLAYGROUNDS", "1");
    make();
    EXPECT_TRUE(model->groups->empty());
    EXPECT_FALSE(*model->didHydrateFromScanCache);
    EXPECT_EQ(bytesOf(tree.url("state/demoted-paths.json")), "{}");
}

TEST_F(CleanupScan, ADevelopmentHostReadsItsEntriesWithTheFirstScan) {
    parts.enrichmentStore->apply(
        {{EnrichmentKey{"url:/h/npm"}, Enrichment{"Known", Safety::risco, "why", {}, {}, {}, dates.now()}}});
    parts.enrichmentStore->schedulePersist();
    loop.advance(std::chrono::seconds(1));
    ASSERT_TRUE(loop.waitFor([&] { return registry.empty(); }));
    parts.enrichmentStore =
        std::make_shared<EnrichmentStore>(tree.url("state/enrichment-cache.json"), "model-1", context, dates);
    const ScopedEnvironment host("XCTestConfigurationFilePath", "");
    make();
    EXPECT_TRUE(parts.enrichmentStore->entries().empty());
    finds({group("cache.npm", {item("/h/npm", 100)})});
    scan();
    EXPECT_EQ(model->resolve(item("/h/npm"), nullptr).reason, "why");
    EXPECT_TRUE(model->selectedItemIDs->empty());
}

TEST_F(CleanupScan, TheHookEmptiesTheEntries) {
    make();
    finds({group("cache.npm", {item("/h/npm", 100)})});
    scan();
    ASSERT_FALSE(parts.enrichmentStore->entries().empty());
    postNotification(enrichmentCacheShouldClear);
    EXPECT_TRUE(parts.enrichmentStore->entries().empty());
}

} // namespace
} // namespace vesko::testing
