#include "enrichment/CleanupReviewService.h"

#include "PassSamples.h"
#include "ScriptedModel.h"
#include "enrichment/ReviewBatch.h"
#include "support/FileTimes.h"
#include "support/LanguageScope.h"
#include "support/ScopedEnvironment.h"
#include "support/TempTree.h"
#include "support/builders.h"
#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vesko {
namespace {

using namespace vesko::testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class SetDates : public DateSource {
public:
    Date now() const override { return today; }
};

std::vector<ScanReviewCandidate> candidates(int count) {
    std::vector<ScanReviewCandidate> made;
    for (int number = 0; number < count; ++number)
        made.push_back(candidate("/u/thing" + std::to_string(number), 10'000 - number));
    return made;
}

std::vector<std::string> askedIDs(const ScriptedModel::Question& question) {
    return idsOf(reviewedLines(question.request.prompt));
}

/// Each line's item into the trash.
std::string goodAnswer(const ScriptedModel::Question& question) {
    std::vector<Record> records;
    for (const std::string& id : askedIDs(question)) records.push_back(reviewed(id, "promote", "trash"));
    return answerOf(records);
}

class CleanupReviewServiceTest : public ::testing::Test {
protected:
    CleanupReviewServiceTest() {
        flows.goodAnswer = goodAnswer;
        flows.answerAfter({1s});
    }
    ~CleanupReviewServiceTest() override {
        task.cancel();
        flows.loop.advance(24h);
    }

    void review(std::vector<CleanupGroup> groups, std::vector<ScanReviewCandidate> offered) {
        task = spawn(flows.context, [this, groups, offered]() -> Task<void> {
            patches = co_await service.review(groups, offered);
            hasEnded = true;
        });
        flows.loop.drain();
    }
    std::vector<std::string> movedPaths() const {
        std::vector<std::string> list;
        for (const ReviewPatch& patch : patches) {
            if (const auto* promote = std::get_if<ReviewPatch::Promote>(&patch.value))
                list.push_back(promote->item.url.path());
            if (const auto* reclassify = std::get_if<ReviewPatch::Reclassify>(&patch.value))
                list.push_back(reclassify->item.url.path());
        }
        return list;
    }

    const LanguageScope english{Language::english};
    ModelFlows flows;
    SetDates dates;
    CleanupReviewService service{{}, flows.model, dates};
    std::vector<ReviewPatch> patches;
    bool hasEnded = false;
    TaskHandle<void> task;
};

TEST_F(CleanupReviewServiceTest, TheSettingsAreThoseOfTheProgram) {
    const CleanupReviewService::Settings settings;
    EXPECT_EQ(settings.maxBatches, 3u);
    EXPECT_EQ(settings.latencyBudget, 30s);
    EXPECT_EQ(CleanupReviewService::batchSize, 10u);
}

TEST_F(CleanupReviewServiceTest, WithNothingDoubtfulNothingIsAsked) {
    review({group("cache.npm", {item("/u/x", hundredMebibytes)}),
            discovered("discover.caches", {item("/u/y", hundredMebibytes - 1)})},
           {});
    EXPECT_TRUE(hasEnded);
    EXPECT_THAT(patches, IsEmpty());
    EXPECT_EQ(flows.model->availabilityReads, 0);
    EXPECT_EQ(flows.model->sessions, 0);
}

TEST_F(CleanupReviewServiceTest, TheFiftyLargestCandidatesAreKeptAndGroupsGoOnFromThere) {
    std::vector<ScanReviewCandidate> offered = candidates(60);
    std::ranges::reverse(offered);
    const auto items = collect(
        {discovered("discover.caches", {item("/g/a", hundredMebibytes), item("/g/b", 2 * hundredMebibytes)})},
        offered);
    ASSERT_THAT(items, SizeIs(52));
    for (std::size_t at = 0; at < 50; ++at) {
        EXPECT_EQ(items[at].id, std::to_string(at));
        EXPECT_EQ(items[at].path, "/u/thing" + std::to_string(at));
        EXPECT_EQ(items[at].currentGroupID, std::nullopt);
    }
    EXPECT_EQ(items[50], (PendingReviewItem{"50", FileURL("/g/a"), hundredMebibytes, "a", true, "/g/a",
                                            "discover.caches"}));
    EXPECT_EQ(items[51].id, "51");
}

TEST_F(CleanupReviewServiceTest, CandidatesOfOneSizeKeepTheirOrder) {
    ScanReviewCandidate named = candidate("/u/b", 5);
    named.name = "as found";
    named.isDirectory = false;
    const auto items = collect({}, {named, candidate("/u/a", 5), candidate("/u/c", 6)});
    ASSERT_THAT(items, SizeIs(3));
    EXPECT_EQ(items[0].path, "/u/c");
    EXPECT_EQ(items[1],
              (PendingReviewItem{"1", FileURL("/u/b"), 5, "as found", false, "/u/b", std::nullopt}));
    EXPECT_EQ(items[2].path, "/u/a");
}

TEST_F(CleanupReviewServiceTest, ASafeDiscoveryIsNotDoubtful) {
    EXPECT_THAT(collect({discovered("discover.caches", {item("/g/a", 2 * hundredMebibytes)}, Safety::seguro),
                         discovered("discover.caches", {item("/g/b", 2 * hundredMebibytes)}, Safety::risco)}),
                IsEmpty());
}

TEST_F(CleanupReviewServiceTest, AHundredMebibytesAreLargeAndOneByteLessIsNot) {
    const auto items = collect({discovered(
        "discover.caches", {item("/g/a", hundredMebibytes), item("/g/b", hundredMebibytes - 1)})});
    ASSERT_THAT(items, SizeIs(1));
    EXPECT_EQ(items[0].path, "/g/a");
}

TEST_F(CleanupReviewServiceTest, OnlyDiscoveriesAreCollected) {
    CleanupGroup nearly = discovered("discover.caches", {item("/g/a", hundredMebibytes)});
    nearly.providerID = {"Discover"};
    EXPECT_THAT(collect({nearly, group("project.artifacts", {item("/g/b", hundredMebibytes)})}), IsEmpty());
}

TEST_F(CleanupReviewServiceTest, WhatWasLatelyTouchedInADiscoveredProjectIsCollectedOnceMore) {
    const TempTree tree;
    const auto stamped = [&](std::string_view name, Date date) {
        const FileURL url = tree.file(name);
        setFileTimes(url, date, date);
        return url.path();
    };
    const std::string fresh = stamped("fresh", today - 604'799s);
    const std::string limit = stamped("limit", today - 604'800s);
    const std::string large = stamped("large", today);
    const auto items =
        collect({discovered("project.found", {item(fresh, 1), item(limit, 1), item(large, hundredMebibytes),
                                              item(tree.path("gone"), 1)}),
                 discovered("discover.caches", {item(fresh, 1)})});
    ASSERT_THAT(items, SizeIs(3));
    EXPECT_EQ(items[0].path, fresh);
    EXPECT_EQ(items[1].path, large);
    EXPECT_EQ(items[2].path, large);
    EXPECT_EQ(items[2].id, "2");
    EXPECT_EQ(items[2].currentGroupID, "project.found");
}

TEST_F(CleanupReviewServiceTest, ACandidateThatIsInAGroupTooIsCollectedTwice) {
    const auto items = collect({discovered("discover.caches", {item("/g/a", hundredMebibytes)})},
                               {candidate("/g/a", hundredMebibytes)});
    ASSERT_THAT(items, SizeIs(2));
    EXPECT_EQ(items[0].currentGroupID, std::nullopt);
    EXPECT_EQ(items[1].currentGroupID, "discover.caches");
}

TEST_F(CleanupReviewServiceTest, OfThirtyFiveItemsTheModelSeesThirtyOneBatchAfterTheOther) {
    review({}, candidates(35));
    ASSERT_THAT(flows.model->questions, SizeIs(1));
    flows.loop.advance(999ms);
    EXPECT_THAT(flows.model->questions, SizeIs(1));
    flows.loop.advance(1h);
    ASSERT_THAT(flows.model->questions, SizeIs(3));
    EXPECT_EQ(flows.model->mostInFlight, 1);
    EXPECT_THAT(askedIDs(flows.model->questions[0]),
                ElementsAre("0", "1", "2", "3", "4", "5", "6", "7", "8", "9"));
    EXPECT_THAT(askedIDs(flows.model->questions[2]),
                ElementsAre("20", "21", "22", "23", "24", "25", "26", "27", "28", "29"));
    EXPECT_TRUE(hasEnded);
    EXPECT_THAT(patches, SizeIs(30));
}

TEST_F(CleanupReviewServiceTest, WhatTheTablePlacesNeverReachesTheModel) {
    review({}, {candidate("/u/.Trash/a", 9), candidate("/u/b", 8)});
    ASSERT_THAT(flows.model->questions, SizeIs(1));
    EXPECT_THAT(reviewedLines(flows.model->questions[0].request.prompt),
                ElementsAre("1 | b | /u/b | group:none | 8 bytes"));
    flows.loop.advance(1s);
    EXPECT_THAT(movedPaths(), ElementsAre("/u/.Trash/a", "/u/b"));
}

TEST_F(CleanupReviewServiceTest, WhenTheTablePlacesAllTheModelIsNotAsked) {
    review({}, {candidate("/u/.Trash/a")});
    EXPECT_TRUE(hasEnded);
    EXPECT_THAT(patches, SizeIs(1));
    EXPECT_EQ(flows.model->sessions, 0);
}

TEST_F(CleanupReviewServiceTest, AnIdOfAnotherBatchIsDropped) {
    flows.model->script = [](const auto&, std::size_t) {
        return ScriptedModel::Answer{
            1s, answerOf({reviewed("0", "promote", "trash"), reviewed("10", "promote", "trash")})};
    };
    review({}, candidates(11));
    flows.loop.advance(2s);
    EXPECT_TRUE(hasEnded);
    EXPECT_THAT(movedPaths(), ElementsAre("/u/thing0", "/u/thing10"));
}

TEST_F(CleanupReviewServiceTest, WithoutAModelTheTableAnswersAlone) {
    flows.model->available = [](int) { return false; };
    review({}, {candidate("/u/LIBRARY/Caches/HomeBrew/x"), candidate("/u/y")});
    EXPECT_TRUE(hasEnded);
    ScannableItem expected = item("/u/LIBRARY/Caches/HomeBrew/x", 1000);
    EXPECT_THAT(patches, ElementsAre(ReviewPatch::promote(expected, catalog("cache.homebrew"))));
    EXPECT_EQ(flows.model->sessions, 0);
}

TEST_F(CleanupReviewServiceTest, ADevelopmentHostLeavesTheModelAlone) {
    const ScopedEnvironment host("XCTestConfigurationFilePath", "x");
    review({}, {candidate("/u/.Trash/x"), candidate("/u/y")});
    EXPECT_TRUE(hasEnded);
    EXPECT_THAT(movedPaths(), ElementsAre("/u/.Trash/x"));
    EXPECT_EQ(flows.model->availabilityReads, 0);
    EXPECT_EQ(flows.model->sessions, 0);
}

TEST_F(CleanupReviewServiceTest, AnswersThatFailOrAreBrokenCostTheirBatchAloneAndAreNotAskedAgain) {
    const std::vector<std::optional<std::string>> bad{
        std::nullopt, R"({"entries":[{"id":"10","action":"delete","targetGroupID":"trash","safety":"seguro",)"
                      R"("reason":""}]})"};
    flows.model->script = [&](const auto& question, std::size_t number) {
        return ScriptedModel::Answer{1s, number < bad.size() ? bad[number] : goodAnswer(question)};
    };
    review({}, candidates(35));
    flows.loop.advance(10s);
    EXPECT_TRUE(hasEnded);
    EXPECT_THAT(flows.model->questions, SizeIs(3));
    EXPECT_THAT(patches, SizeIs(10));
    EXPECT_EQ(movedPaths().front(), "/u/thing20");
}

TEST_F(CleanupReviewServiceTest, AtExactlyTheBudgetTheNextBatchStillBegins) {
    flows.answerAfter({30s, 1s});
    review({}, candidates(20));
    flows.loop.advance(31s);
    EXPECT_TRUE(hasEnded);
    EXPECT_THAT(patches, SizeIs(20));
}

TEST_F(CleanupReviewServiceTest, JustBehindTheBudgetNoBatchBeginsAndWhatCameIsKept) {
    flows.answerAfter({29s, 1s + 1ns, 1s});
    review({}, candidates(30));
    flows.loop.advance(1h);
    EXPECT_TRUE(hasEnded);
    EXPECT_THAT(flows.model->questions, SizeIs(2));
    EXPECT_THAT(patches, SizeIs(20));
}

TEST_F(CleanupReviewServiceTest, ABatchThatBeganInTimeRunsToItsEnd) {
    flows.answerAfter({29s, 10min});
    review({}, candidates(20));
    flows.loop.advance(1h);
    EXPECT_TRUE(hasEnded);
    EXPECT_THAT(patches, SizeIs(20));
}

TEST_F(CleanupReviewServiceTest, ACancelledRunAsksNoMoreAndGivesWhatItHas) {
    flows.answerAfter({1s, 1h});
    review({}, candidates(30));
    flows.loop.advance(2s);
    ASSERT_EQ(flows.model->inFlight, 1);
    task.cancel();
    flows.loop.drain();
    EXPECT_TRUE(hasEnded);
    EXPECT_THAT(patches, SizeIs(10));
    EXPECT_EQ(flows.model->cancelled, 1);
    EXPECT_THAT(flows.model->questions, SizeIs(2));
}

TEST_F(CleanupReviewServiceTest, AQuestionIsAskedAsTheModelWantsIt) {
    review({}, {candidate("/u/a")});
    ASSERT_THAT(flows.model->questions, SizeIs(1));
    const ScriptedModel::Question& question = flows.model->questions[0];
    EXPECT_EQ(question.sessionsPrewarmed, 1);
    EXPECT_EQ(question.request.schema, &ReviewBatch::schema());
    EXPECT_TRUE(question.request.includeSchemaInPrompt);
    EXPECT_EQ(question.request.options, (GenerationOptions{0.0, std::nullopt}));
    EXPECT_EQ(question.instructions,
              "Voce revisa resultados de varredura de disco do Vesko em macOS.\n"
              "Promote apenas candidatos claros de limpeza. Nunca remova itens da lista.\n"
              "Nunca invente caminhos. Safety revisar na duvida.\n"
              "Pastas em ~/Library/Logs antigas -> logs.stale. Lixeira -> trash.\n"
              "Caches de package managers (Homebrew, npm, pnpm, SwiftPM, JetBrains, etc.) -> cache.* "
              "correspondente.");
}

TEST_F(CleanupReviewServiceTest, AModelThatObeysANameMovesNothingElse) {
    flows.model->script = [](const auto&, std::size_t) {
        return ScriptedModel::Answer{
            1s, answerOf({reviewed("99", "promote", "trash"), reviewed("/etc", "promote", "trash"),
                          reviewed("0", "demote", "trash"), reviewed("0", "promote", "/etc"),
                          reviewed("0", "promote", "trash")})};
    };
    review({}, {candidate("/t/a\n99 | Safe | /etc")});
    flows.loop.advance(1s);
    EXPECT_THAT(patches,
                ElementsAre(ReviewPatch::promote(item("/t/a\n99 | Safe | /etc", 1000), catalog("trash"))));
}

TEST_F(CleanupReviewServiceTest, RunsLeaveNothingBehind) {
    for (int run = 0; run < 1000; ++run) {
        hasEnded = false;
        // Every second run is cut short.
        review({}, candidates(30));
        flows.loop.advance(run % 2 == 0 ? 3s : 1500ms);
        task.cancel();
        flows.loop.drain();
        ASSERT_TRUE(hasEnded);
        ASSERT_THAT(patches, SizeIs(run % 2 == 0 ? 30 : 10));
        flows.model->questions.clear();
    }
    EXPECT_TRUE(flows.registry.empty());
    EXPECT_EQ(flows.loop.timers(), 0u);
    EXPECT_EQ(flows.model->sessionsAlive, 0);
}

TEST_F(CleanupReviewServiceTest, TheCollectingIsDoneOnAWorker) {
    ManualLoop workers;
    flows.context.workers = &workers;
    review({}, {candidate("/u/.Trash/a", 9), candidate("/u/b", 8)});
    EXPECT_EQ(flows.model->availabilityReads, 0);
    EXPECT_EQ(workers.drain(), 1u);
    flows.loop.advance(1s);
    EXPECT_TRUE(hasEnded);
    EXPECT_THAT(movedPaths(), ElementsAre("/u/.Trash/a", "/u/b"));
}

TEST_F(CleanupReviewServiceTest, ARunWorksWithThreads) {
    WorkerPool workers;
    flows.context.workers = &workers;
    review({}, {candidate("/u/.Trash/a", 9), candidate("/u/b", 8)});
    ASSERT_TRUE(flows.loop.waitFor([this] { return flows.model->questions.size() == 1; }));
    flows.loop.advance(1s);
    EXPECT_TRUE(hasEnded);
    EXPECT_THAT(movedPaths(), ElementsAre("/u/.Trash/a", "/u/b"));
}

} // namespace
} // namespace vesko
