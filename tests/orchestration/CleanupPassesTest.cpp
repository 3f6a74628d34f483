#include "orchestration/CleanupFixture.h"

#include <algorithm>
#include <filesystem>

namespace vesko::testing {
namespace {

/// Gives its stream's other end to the test.
class ScriptedEnrichment final : public CleanupEnriching {
public:
    AsyncStream<EnrichmentPatch> enrich(std::vector<CleanupGroup> groups) override {
        asked.push_back(std::move(groups));
        return AsyncStream<EnrichmentPatch>([this](auto events) {
            producer = events;
            if (endsAtOnce) events.finish();
        });
    }
    std::vector<std::vector<CleanupGroup>> asked;
    std::optional<AsyncStream<EnrichmentPatch>::Producer> producer;
    bool endsAtOnce = false;
};

/// Answers what it was told to, after as many seconds.
class ScriptedReview final : public CleanupReviewing {
public:
    Task<std::vector<ReviewPatch>> review(std::vector<CleanupGroup> groups,
                                          std::vector<ScanReviewCandidate> candidates) override {
        asked.emplace_back(std::move(groups), std::move(candidates));
        if (seconds > 0) co_await sleepFor(std::chrono::seconds(seconds));
        co_return answer;
    }
    std::vector<std::pair<std::vector<CleanupGroup>, std::vector<ScanReviewCandidate>>> asked;
    std::vector<ReviewPatch> answer;
    int seconds = 0;
};

class CleanupPasses : public CleanupTest {
protected:
    CleanupPasses() {
        parts.enricher = enricher;
        parts.reviewer = reviewer;
        parts.isEnrichmentAvailable = [this] { return enrichmentIsThere; };
        parts.isReviewAvailable = [this] { return reviewIsThere; };
        make();
    }

    static CleanupGroup discoveries(std::vector<ScannableItem> items, Safety safety = Safety::revisar) {
        return group("discover.caches", std::move(items), safety);
    }
    EnrichmentPatch patch(const std::string& key, Safety safety = Safety::seguro) const {
        return {{key},
                {"Model's name", safety, "Model's reason", "cache", EnrichmentSource::model, "model-1",
                 dates.now()}};
    }
    static std::unordered_set<EnrichmentKey> keys(const std::vector<std::string>& words) {
        std::unordered_set<EnrichmentKey> set;
        for (const std::string& word : words) set.insert({word});
        return set;
    }
    void apply(std::vector<ReviewPatch> patches) {
        finish(spawn(context, [this, patches] { return model->applyReviewPatches(patches); }));
    }
    bool cacheFileIsThere() { return std::filesystem::exists(tree.path("state/enrichment-cache.json")); }
    void settle(Duration time) {
        loop.advance(time);
        loop.waitFor([&] { return registry.empty(); }, std::chrono::milliseconds(200));
    }

    std::shared_ptr<ScriptedEnrichment> enricher = std::make_shared<ScriptedEnrichment>();
    std::shared_ptr<ScriptedReview> reviewer = std::make_shared<ScriptedReview>();
    bool enrichmentIsThere = true;
    bool reviewIsThere = false;
};

TEST_F(CleanupPasses, WithoutAModelNothingStarts) {
    enrichmentIsThere = false;
    finds({discoveries({item("/c/x")})});
    scan();
    EXPECT_FALSE(model->isAIBusy());
    EXPECT_TRUE(enricher->asked.empty());
    EXPECT_TRUE(reviewer->asked.empty());
}

TEST_F(CleanupPasses, TheModelIsAskedForDiscoveriesThatItHasNotAnswered) {
    parts.enrichmentStore->apply({{{"url:/c/known"}, patch("url:/c/known").enrichment}});
    finds({discoveries({item("/c/x"), item("/c/known")}), group("cache.npm", {item("/n")})});
    scan();
    ASSERT_EQ(enricher->asked.size(), 1u);
    ASSERT_EQ(idsOf(enricher->asked[0]), std::vector<std::string>{"discover.caches"});
    EXPECT_EQ(pathsOf(enricher->asked[0][0]), std::vector<std::string>{"/c/x"});
    EXPECT_TRUE(*model->isEnriching);
    EXPECT_EQ(*model->analyzingKeys, keys({"url:/c/x"}));
    EXPECT_TRUE(model->isAIBusy());
    EXPECT_EQ(*model->phase, CleanupPhase::idle());
    EXPECT_TRUE(model->resolveGroup(listed("discover.caches")).isAnalyzing);
}

TEST_F(CleanupPasses, WithNothingToAskNothingStarts) {
    finds({group("cache.npm", {item("/n")})});
    scan();
    EXPECT_TRUE(enricher->asked.empty());
    EXPECT_FALSE(*model->isEnriching);
    finds({});
    scan();
    EXPECT_TRUE(enricher->asked.empty());
}

TEST_F(CleanupPasses, AStreamThatEndsAtOnceFillsAndEmptiesWhatIsAsked) {
    enricher->endsAtOnce = true;
    std::vector<std::pair<bool, std::size_t>> seen;
    const auto watch = model->changes.subscribe([&] {
        const std::pair now{*model->isEnriching, model->analyzingKeys->size()};
        if (seen.empty() || seen.back() != now) seen.push_back(now);
    });
    finds({discoveries({item("/c/x")})});
    scan();
    EXPECT_EQ(enricher->asked.size(), 1u);
    EXPECT_EQ(seen, (std::vector<std::pair<bool, std::size_t>>{
                        {false, 0}, {true, 0}, {true, 1}, {true, 0}, {false, 0}}));
    EXPECT_FALSE(model->isAIBusy());
}

TEST_F(CleanupPasses, EachAnswerShowsAsItComes) {
    finds({discoveries({item("/c/x"), item("/c/y")})});
    scan();
    enricher->producer->yield(patch("url:/c/x"));
    loop.drain();
    EXPECT_EQ(*model->analyzingKeys, keys({"url:/c/y"}));
    const ResolvedEnrichment resolved = model->resolve(item("/c/x"), &listed("discover.caches"));
    EXPECT_EQ(resolved.friendlyName, "Model's name");
    EXPECT_TRUE(resolved.isAIRefined);
    // The group's verdict on safety stands: a model does not make an item safer.
    EXPECT_EQ(resolved.safety, Safety::revisar);
    EXPECT_TRUE(model->selectedItemIDs->empty());
    enricher->producer->finish();
    loop.drain();
    EXPECT_TRUE(model->analyzingKeys->empty());
    EXPECT_FALSE(*model->isEnriching);
    EXPECT_TRUE(parts.enrichmentStore->needsModelEnrichment({"url:/c/y"}));
}

TEST_F(CleanupPasses, AFloodOfAnswersLetsTheRestOfTheProgramRunBetweenThem) {
    finds({discoveries({item("/c/x")})});
    scan();
    for (int i = 0; i < 1000; ++i) {
        EnrichmentPatch one = patch("url:/c/x");
        one.enrichment.friendlyName = std::to_string(i);
        enricher->producer->yield(std::move(one));
    }
    enricher->producer->finish();
    std::vector<std::string> seen;
    std::function<void()> look = [&] {
        seen.push_back(model->resolve(item("/c/x"), nullptr).friendlyName);
        if (seen.size() < 10) loop.post(look);
    };
    loop.post(look);
    loop.drain();
    EXPECT_EQ(std::ranges::count(seen, "15"), 1);
    EXPECT_EQ(model->resolve(item("/c/x"), nullptr).friendlyName, "999");
    EXPECT_FALSE(model->isAIBusy());
}

TEST_F(CleanupPasses, AnAnswerReappliesTheSelectionOfItsItems) {
    finds({discoveries({item("/c/x"), item("/c/y")}, Safety::seguro)});
    scan();
    ASSERT_EQ(*model->selectedItemIDs, urls({"/c/x", "/c/y"}));
    model->selectedItemIDs = URLSet();
    enricher->producer->yield(patch("url:/c/x"));
    loop.drain();
    EXPECT_EQ(*model->selectedItemIDs, urls({"/c/x"}));
}

TEST_F(CleanupPasses, AnAnswerForAnItemThatIsGoneIsKeptAllTheSame) {
    finds({discoveries({item("/c/x")})});
    scan();
    model->groups = {group("cache.npm", {item("/n")})};
    enricher->producer->yield(patch("url:/c/x"));
    loop.drain();
    EXPECT_FALSE(parts.enrichmentStore->needsModelEnrichment({"url:/c/x"}));
}

TEST_F(CleanupPasses, ABurstOfAnswersIsWrittenOnceItHasEnded) {
    finds({discoveries({item("/c/x"), item("/c/y")})});
    scan();
    enricher->producer->yield(patch("url:/c/x"));
    loop.advance(std::chrono::milliseconds(700));
    enricher->producer->yield(patch("url:/c/y"));
    loop.advance(std::chrono::milliseconds(1500));
    settle(Duration::zero());
    EXPECT_FALSE(cacheFileIsThere());
    enricher->producer->finish();
    settle(std::chrono::milliseconds(101));
    EXPECT_TRUE(cacheFileIsThere());
}

TEST_F(CleanupPasses, StoppingKeepsTheAnswersAndDropsTheWriteThatWaits) {
    finds({discoveries({item("/c/1"), item("/c/2"), item("/c/3"), item("/c/4"), item("/c/5")})});
    scan();
    for (const char* key : {"url:/c/1", "url:/c/2", "url:/c/3"}) enricher->producer->yield(patch(key));
    loop.drain();
    model->stopEnrichment();
    EXPECT_FALSE(*model->isEnriching);
    EXPECT_TRUE(model->analyzingKeys->empty());
    enricher->producer->yield(patch("url:/c/4"));
    settle(std::chrono::seconds(5));
    EXPECT_FALSE(parts.enrichmentStore->needsModelEnrichment({"url:/c/3"}));
    EXPECT_TRUE(parts.enrichmentStore->needsModelEnrichment({"url:/c/4"}));
    EXPECT_FALSE(cacheFileIsThere());
}

TEST_F(CleanupPasses, AnOldPassThatWakesLateLeavesTheNewOneAlone) {
    finds({discoveries({item("/c/x")})});
    scan();
    const auto old = *enricher->producer;
    model->startEnrichment();
    old.finish();
    loop.drain();
    EXPECT_TRUE(*model->isEnriching);
    EXPECT_EQ(*model->analyzingKeys, keys({"url:/c/x"}));
}

TEST_F(CleanupPasses, ThePassesRunOnWhileTheNextScanRuns) {
    reviewIsThere = true;
    reviewer->seconds = 10;
    finds({discoveries({item("/c/x")})});
    scan();
    const auto gate = findsBehindAGate(group("trash", {item("/t")}));
    const TaskHandle<void> next = beginScan(ScanMode::validation);
    ASSERT_TRUE(loop.waitFor([&] { return model->scanProgress->has_value(); }));
    EXPECT_TRUE(*model->isEnriching);
    EXPECT_TRUE(*model->isReviewing);
    model->cancelScan();
    gate->open();
    finish(next);
    EXPECT_TRUE(*model->isEnriching);
    EXPECT_TRUE(*model->isReviewing);
    enricher->producer->finish();
    loop.advance(std::chrono::seconds(11));
    EXPECT_TRUE(loop.waitFor([&] { return !model->isAIBusy(); }));
}

TEST_F(CleanupPasses, ThePassesDoNotKeepTheModelAlive) {
    reviewIsThere = true;
    reviewer->seconds = 10;
    finds({discoveries({item("/c/x")})});
    scan();
    enricher->producer->yield(patch("url:/c/x"));
    const std::weak_ptr<CleanupViewModel> weak = model;
    model.reset();
    EXPECT_TRUE(weak.expired());
    EXPECT_TRUE(loop.waitFor([&] { return registry.empty(); }));
}

TEST_F(CleanupPasses, TheReviewIsAskedWithTheListAndTheCandidates) {
    enrichmentIsThere = false;
    reviewIsThere = true;
    finds({discoveries({item("/c/x", 7)}), group("cache.npm", {item("/n")})});
    scan();
    ASSERT_EQ(reviewer->asked.size(), 1u);
    EXPECT_EQ(idsOf(reviewer->asked[0].first), (std::vector<std::string>{"cache.npm", "discover.caches"}));
    ASSERT_EQ(reviewer->asked[0].second.size(), 1u);
    EXPECT_EQ(reviewer->asked[0].second[0].url, FileURL("/c/x"));
    EXPECT_TRUE(loop.waitFor([&] { return !*model->isReviewing; }));
    EXPECT_EQ(model->pendingReviewCandidates->size(), 1u);
    finds({});
    scan();
    EXPECT_EQ(reviewer->asked.size(), 1u);
    EXPECT_FALSE(*model->isReviewing);
}

TEST_F(CleanupPasses, AReviewsPatchesReachTheList) {
    enrichmentIsThere = false;
    reviewIsThere = true;
    reviewer->answer = {ReviewPatch::promote(item("/c/x", 500), metadata("cache.yarn"))};
    finds({discoveries({item("/c/x", 500), item("/c/y", 5)})});
    scan();
    ASSERT_TRUE(loop.waitFor([&] { return !*model->isReviewing; }));
    EXPECT_EQ(idsOf(*model->groups), (std::vector<std::string>{"cache.yarn", "discover.caches"}));
    EXPECT_EQ(*model->reviewMessage, localized("review.promotedOnly %lld", 1));
}

TEST_F(CleanupPasses, AReviewThatWasStoppedChangesNothing) {
    enrichmentIsThere = false;
    reviewIsThere = true;
    reviewer->seconds = 5;
    reviewer->answer = {ReviewPatch::promote(item("/c/x", 500), metadata("cache.yarn"))};
    finds({discoveries({item("/c/x", 500)})});
    scan();
    ASSERT_TRUE(*model->isReviewing);
    model->stopReview();
    EXPECT_FALSE(*model->isReviewing);
    settle(std::chrono::seconds(6));
    EXPECT_EQ(idsOf(*model->groups), std::vector<std::string>{"discover.caches"});
    EXPECT_FALSE(model->reviewMessage->has_value());
}

TEST_F(CleanupPasses, APromotedItemLeavesItsOldGroupAndIsNotDoubled) {
    model->groups = {discoveries({item("/c/x", 500), item("/c/y", 5)}),
                     group("cache.yarn", {item("/c/x", 500)})};
    apply({ReviewPatch::promote(item("/c/x", 500), metadata("cache.yarn"))});
    EXPECT_EQ(idsOf(*model->groups), (std::vector<std::string>{"cache.yarn", "discover.caches"}));
    EXPECT_EQ(pathsOf(listed("cache.yarn")), std::vector<std::string>{"/c/x"});
    EXPECT_EQ(pathsOf(listed("discover.caches")), std::vector<std::string>{"/c/y"});
    EXPECT_EQ(*model->reviewMessage, localized("review.promotedOnly %lld", 1));
    EXPECT_EQ(*model->aiDiscoveredURLs, urls({"/c/x"}));
    EXPECT_EQ(*model->foundTotalBytes, 505);
    EXPECT_EQ(*model->indexedBytes, 505);
}

TEST_F(CleanupPasses, ANewGroupIsSortedInByItsSize) {
    model->groups = {group("trash", {item("/t", 900)}, Safety::revisar),
                     discoveries({item("/c/x", 500), item("/c/y", 5)})};
    apply({ReviewPatch::promote(item("/c/x", 500), metadata("cache.yarn"))});
    EXPECT_EQ(idsOf(*model->groups), (std::vector<std::string>{"trash", "cache.yarn", "discover.caches"}));
    EXPECT_EQ(listed("cache.yarn").title, probeTitle("cache.yarn"));
    EXPECT_EQ(listed("cache.yarn").baselineReason, probeReason("cache.yarn"));
    EXPECT_EQ(listed("cache.yarn").subtitle, "");
    EXPECT_EQ(*model->selectedItemIDs, urls({"/c/x"}));
    EXPECT_TRUE(parts.enrichmentStore->lookup({"url:/c/x"}));
    EXPECT_FALSE(saved());
}

TEST_F(CleanupPasses, DemotionsChangeNothing) {
    const std::vector<CleanupGroup> before{discoveries({item("/c/x", 500)})};
    model->groups = before;
    model->indexedBytes = 3;
    const std::uint64_t revision = model->groupsRevision();
    apply({ReviewPatch::demote(FileURL("/c/x"))});
    EXPECT_EQ(*model->groups, before);
    EXPECT_EQ(model->groupsRevision(), revision);
    EXPECT_EQ(*model->indexedBytes, 3);
    EXPECT_FALSE(model->reviewMessage->has_value());
}

TEST_F(CleanupPasses, TheMessageCountsBothKindsOfMoves) {
    model->groups = {discoveries({item("/c/x", 500), item("/c/y", 5), item("/c/z", 4)})};
    apply({ReviewPatch::promote(item("/c/x", 500), metadata("cache.yarn")),
           ReviewPatch::demote(FileURL("/c/z")),
           ReviewPatch::reclassify(item("/c/y", 5), "discover.caches",
                                   metadata("logs.stale", Safety::revisar))});
    EXPECT_EQ(*model->reviewMessage, localized("review.promotedOnly %lld", 2));
    EXPECT_EQ(*model->aiDiscoveredURLs, urls({"/c/x"}));
    model->clearReviewMessage();
    EXPECT_FALSE(model->reviewMessage->has_value());
}

TEST_F(CleanupPasses, ThreeMovesAreCountedAsThree) {
    model->groups = {discoveries({item("/c/x", 3), item("/c/y", 2), item("/c/z", 1)})};
    apply({ReviewPatch::promote(item("/c/x", 3), metadata("cache.yarn")),
           ReviewPatch::promote(item("/c/y", 2), metadata("cache.yarn")),
           ReviewPatch::promote(item("/c/z", 1), metadata("cache.npm"))});
    EXPECT_EQ(*model->reviewMessage, localized("review.promotedOnly %lld", 3));
}

TEST_F(CleanupPasses, AMoveIntoASafeGroupTakesThePersonsDecisionBack) {
    model->groups = {discoveries({item("/c/x", 500)})};
    model->setSelected(false, item("/c/x"));
    apply({ReviewPatch::reclassify(item("/c/x", 500), "discover.caches", metadata("cache.yarn"))});
    EXPECT_TRUE(model->userOverriddenIDs->empty());
    EXPECT_EQ(*model->selectedItemIDs, urls({"/c/x"}));
}

TEST_F(CleanupPasses, AMoveIntoADoubtfulGroupSelectsNothing) {
    model->groups = {discoveries({item("/c/x", 500)})};
    model->setSelected(true, item("/c/x"));
    apply(
        {ReviewPatch::reclassify(item("/c/x", 500), "discover.caches", metadata("trash", Safety::revisar))});
    EXPECT_TRUE(model->userOverriddenIDs->empty());
    EXPECT_TRUE(model->selectedItemIDs->empty());
}

TEST_F(CleanupPasses, PatchesApplyToWhatAScanHasFoundMeanwhile) {
    model->groups = {discoveries({item("/c/x", 500)})};
    const TaskHandle<void> applying = spawn(context, [this] {
        return model->applyReviewPatches({ReviewPatch::promote(item("/c/x", 500), metadata("cache.yarn"))});
    });
    const TaskHandle<void> scanning = spawn(context, [this]() -> Task<void> {
        model->groups = {discoveries({item("/c/x", 500)}), group("trash", {item("/t", 1)}, Safety::revisar)};
        co_return;
    });
    finish(scanning);
    finish(applying);
    EXPECT_EQ(idsOf(*model->groups), (std::vector<std::string>{"cache.yarn", "trash"}));
}

} // namespace
} // namespace vesko::testing
