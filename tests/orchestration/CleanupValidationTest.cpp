#include "orchestration/CleanupFixture.h"

namespace vesko::testing {
namespace {

using CleanupValidation = CleanupTest;

TEST_F(CleanupValidation, WithoutACacheTheModelBeginsEmpty) {
    make();
    EXPECT_FALSE(*model->didHydrateFromScanCache);
    EXPECT_TRUE(model->groups->empty());
    EXPECT_TRUE(model->selectedItemIDs->empty());
    EXPECT_TRUE(parts.enrichmentStore->entries().empty());
}

TEST_F(CleanupValidation, TheLastScanIsThereAtTheStart) {
    ScanCacheSnapshot snapshot;
    snapshot.scanDate = dateFromUnixSeconds(1'600'000'000);
    snapshot.foundTotalBytes = 777;
    snapshot.groups = {group("cache.npm", {item("/h/npm", 100)}),
                       group("trash", {item("/h/t", 50)}, Safety::revisar)};
    snapshot.lastCleanupDate = dateFromUnixSeconds(1'500'000'000);
    snapshot.lastCleanupFreedBytes = 12;
    snapshot.probeFingerprints["trash"].pathMtimes["/h"] = dateFromUnixSeconds(5);
    parts.scanCacheStore->save(snapshot);
    tree.file("state/demoted-paths.json", "{}");
    make();
    EXPECT_TRUE(*model->didHydrateFromScanCache);
    EXPECT_EQ(idsOf(*model->groups), (std::vector<std::string>{"cache.npm", "trash"}));
    EXPECT_EQ(*model->foundTotalBytes, 777);
    EXPECT_EQ(*model->indexedBytes, 0);
    EXPECT_EQ(*model->lastScanDate, snapshot.scanDate);
    EXPECT_EQ(*model->lastCleanupDate, snapshot.lastCleanupDate);
    EXPECT_EQ(*model->lastCleanupFreedBytes, 12);
    EXPECT_EQ(*model->selectedItemIDs, urls({"/h/npm"}));
    EXPECT_EQ(*model->phase, CleanupPhase::idle());
    EXPECT_EQ(parts.enrichmentStore->entries().size(), 2u);
    EXPECT_FALSE(std::filesystem::exists(tree.path("state/demoted-paths.json")));
}

TEST_F(CleanupValidation, ASnapshotWithoutGroupsCountsAsWell) {
    ScanCacheSnapshot snapshot;
    snapshot.scanDate = dates.now();
    parts.scanCacheStore->save(snapshot);
    make();
    EXPECT_TRUE(*model->didHydrateFromScanCache);
    EXPECT_TRUE(model->groups->empty());
}

TEST_F(CleanupValidation, TheListStaysWhileTheScanRuns) {
    make();
    finds({group("cache.npm", {item("/h/npm", 100)}), group("trash", {item("/h/t", 50)}, Safety::revisar)});
    scan();
    model->aiDiscoveredURLs = urls({"/h/t"});
    probes.clear();
    const auto gate = findsBehindAGate(group("cache.npm", {item("/h/npm", 70)}));
    const TaskHandle<void> task = beginScan(ScanMode::validation);
    ASSERT_TRUE(loop.waitFor([&] { return model->scanProgress->has_value(); }));
    EXPECT_EQ(idsOf(*model->groups), (std::vector<std::string>{"cache.npm", "trash"}));
    EXPECT_EQ(*model->foundTotalBytes, 150);
    EXPECT_EQ(*model->indexedBytes, 150);
    EXPECT_EQ((*model->scanProgress)->bytesIndexed, 150);
    EXPECT_EQ(*model->aiDiscoveredURLs, urls({"/h/t"}));
    gate->open();
    finish(task);
    EXPECT_EQ(listed("cache.npm").items.front().size, 70);
    EXPECT_EQ(*model->foundTotalBytes, 120);
}

TEST_F(CleanupValidation, AProbeThatRanAndFoundNothingTakesItsGroupAwayAtTheEnd) {
    make();
    finds({group("cache.npm", {item("/h/npm", 100)}), group("trash", {item("/h/t", 50)})});
    scan();
    probes.clear();
    findsNothing("cache.npm");
    const auto gate = findsBehindAGate(group("cache.pnpm", {item("/h/pnpm", 10)}));
    const TaskHandle<void> task = beginScan(ScanMode::validation);
    ASSERT_TRUE(loop.waitFor(
        [&] { return model->scanProgress->has_value() && (*model->scanProgress)->directoriesVisited == 1; }));
    EXPECT_EQ(idsOf(*model->groups), (std::vector<std::string>{"cache.npm", "trash"}));
    gate->open();
    finish(task);
    EXPECT_EQ(idsOf(*model->groups), (std::vector<std::string>{"trash", "cache.pnpm"}));
}

TEST_F(CleanupValidation, TheSelectionIsKeptAndOnlyNewGroupsAreSelected) {
    make();
    finds({group("cache.npm", {item("/h/npm", 100)}), group("trash", {item("/h/t", 50)}, Safety::revisar)});
    scan();
    model->setSelected(false, item("/h/npm"));
    model->setSelected(true, item("/h/t"));
    finds({group("cache.npm", {item("/h/npm", 100), item("/h/npm2", 90)}),
           group("trash", {item("/h/t", 50)}, Safety::revisar), group("cache.pnpm", {item("/h/pnpm", 10)})});
    scan(ScanMode::validation);
    EXPECT_EQ(*model->selectedItemIDs, urls({"/h/t", "/h/pnpm"}));
    EXPECT_EQ(*model->userOverriddenIDs, urls({"/h/npm", "/h/t"}));
}

TEST_F(CleanupValidation, AFullScanForgetsThePersonsChoices) {
    make();
    finds({group("cache.npm", {item("/h/npm", 100)})});
    scan();
    model->setSelected(false, item("/h/npm"));
    scan();
    EXPECT_EQ(*model->selectedItemIDs, urls({"/h/npm"}));
    EXPECT_TRUE(model->userOverriddenIDs->empty());
}

TEST_F(CleanupValidation, ASelectedItemThatIsGoneCountsNowhereAndIsFoundSelectedAgain) {
    make();
    finds({group("trash", {item("/h/t", 50), item("/h/u", 5)}, Safety::revisar)});
    scan();
    model->setSelected(true, item("/h/t"));
    finds({group("trash", {item("/h/u", 5)}, Safety::revisar)});
    scan(ScanMode::validation);
    EXPECT_EQ(model->selectedBytes(), 0);
    EXPECT_EQ(model->selectedCount(), 0);
    EXPECT_EQ(*model->selectedItemIDs, urls({"/h/t"}));
    finds({group("trash", {item("/h/t", 60), item("/h/u", 5)}, Safety::revisar)});
    scan(ScanMode::validation);
    EXPECT_EQ(model->selectedBytes(), 60);
}

TEST_F(CleanupValidation, CandidatesAreAddedToThoseOfTheLastScan) {
    make();
    finds({group("discover.caches", {item("/h/c/x", 900)})});
    scan();
    scan(ScanMode::validation);
    ASSERT_EQ(model->pendingReviewCandidates->size(), 2u);
    EXPECT_EQ((*model->pendingReviewCandidates)[0], (*model->pendingReviewCandidates)[1]);
    scan();
    EXPECT_EQ(model->pendingReviewCandidates->size(), 1u);
}

TEST_F(CleanupValidation, ACancelledValidationMergesAndKeepsNothing) {
    make();
    finds({group("cache.npm", {item("/h/npm", 100)}), group("trash", {item("/h/t", 50)})});
    scan();
    const auto before = saved();
    dates.set(dateFromUnixSeconds(1'800'000'000));
    probes.clear();
    finds({group("cache.npm", {item("/h/npm", 70)})});
    findsNothing("trash");
    const auto gate = findsBehindAGate(group("cache.pnpm", {item("/h/pnpm", 10)}));
    const TaskHandle<void> task = beginScan(ScanMode::validation);
    ASSERT_TRUE(loop.waitFor(
        [&] { return model->scanProgress->has_value() && (*model->scanProgress)->directoriesVisited == 2; }));
    ASSERT_TRUE(loop.waitFor([&] { return *model->foundTotalBytes == 120; }));
    model->cancelScan();
    gate->open();
    finish(task);
    EXPECT_EQ(idsOf(*model->groups), (std::vector<std::string>{"cache.npm", "trash"}));
    EXPECT_EQ(listed("cache.npm").items.front().size, 70);
    EXPECT_EQ(saved(), before);
}

} // namespace
} // namespace vesko::testing
