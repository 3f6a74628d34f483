#include "enrichment/CleanupEnrichmentService.h"

#include "PassSamples.h"
#include "ScriptedModel.h"
#include "base/StringCatalog.h"
#include "enrichment/EnrichmentBatch.h"
#include "support/LanguageScope.h"
#include "support/ScopedEnvironment.h"
#include "support/builders.h"
#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vesko {
namespace {

using namespace vesko::testing;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

class SetDates : public DateSource {
public:
    Date now() const override { return date; }
    Date date = dateFromUnixSeconds(1'795'256'100);
};

std::vector<ScannableItem> items(int count) {
    std::vector<ScannableItem> made;
    for (int number = 0; number < count; ++number)
        made.push_back(item("/home/a/Library/Caches/thing" + std::to_string(number), 1000));
    return made;
}

Record record(const std::string& id, const std::string& safety = "seguro") {
    return {{"id", id},
            {"friendlyName", "name " + id},
            {"safety", safety},
            {"reason", "reason " + id},
            {"kind", "cache"}};
}

std::vector<std::string> asked(const ScriptedModel::Question& question) {
    return linesBehind(question.request.prompt, "Judge");
}

std::vector<std::string> askedIDs(const ScriptedModel::Question& question) { return idsOf(asked(question)); }

/// A good answer to each line.
std::string goodAnswer(const ScriptedModel::Question& question) {
    std::vector<Record> records;
    for (const std::string& id : askedIDs(question)) records.push_back(record(id));
    return answerOf(records);
}

class CleanupEnrichmentServiceTest : public ::testing::Test {
protected:
    CleanupEnrichmentServiceTest() {
        flows.goodAnswer = goodAnswer;
        flows.answerAfter({1s});
    }
    ~CleanupEnrichmentServiceTest() override {
        reader.cancel();
        flows.loop.advance(24h);
    }

    void answerWith(std::string text) {
        flows.model->script = [text = std::move(text)](const auto&, std::size_t) {
            return ScriptedModel::Answer{1s, text};
        };
    }
    void enrich(const std::vector<CleanupGroup>& groups) {
        reader = spawn(flows.context, [this, groups]() -> Task<void> {
            AsyncStream<EnrichmentPatch> stream = service->enrich(groups);
            for (;;) {
                std::optional<EnrichmentPatch> patch = co_await stream.next();
                if (!patch) break;
                patches.push_back(std::move(*patch));
            }
            hasEnded = true;
        });
        flows.loop.drain();
    }
    std::vector<std::string> names() const {
        std::vector<std::string> list;
        for (const EnrichmentPatch& patch : patches) list.push_back(patch.enrichment.friendlyName);
        return list;
    }

    const LanguageScope english{Language::english};
    ModelFlows flows;
    SetDates dates;
    std::shared_ptr<CleanupEnrichmentService> service = std::make_shared<CleanupEnrichmentService>(
        CleanupEnrichmentService::Settings{}, flows.model, flows.context, dates);
    std::vector<EnrichmentPatch> patches;
    bool hasEnded = false;
    TaskHandle<void> reader;
};

TEST_F(CleanupEnrichmentServiceTest, TheSettingsAreThoseOfTheProgram) {
    const CleanupEnrichmentService::Settings settings;
    EXPECT_EQ(settings.batchSize, 12u);
    EXPECT_EQ(settings.maxConcurrentBatches, 2u);
    EXPECT_EQ(settings.latencyBudget, 20s);
    EXPECT_EQ(settings.modelVersion, "afm-2026-06-i18n");
}

TEST_F(CleanupEnrichmentServiceTest, AListWithoutDiscoveriesEndsAtOnceAndAsksNothing) {
    CleanupGroup nearly = group("discover.caches", items(1));
    nearly.providerID = {"Discover"};
    enrich({group("cache.npm", items(3)), nearly});
    EXPECT_TRUE(hasEnded);
    EXPECT_THAT(patches, IsEmpty());
    EXPECT_EQ(flows.model->sessions, 0);
}

TEST_F(CleanupEnrichmentServiceTest, TwentyFiveItemsGoInThreeBatchesTheThirdOnceOneHasReturned) {
    flows.answerAfter({5s, 8s, 1s});
    enrich({discovered("discover.caches", items(25))});
    ASSERT_THAT(flows.model->questions, SizeIs(2));
    EXPECT_THAT(askedIDs(flows.model->questions[0]),
                ElementsAre("0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11"));
    EXPECT_THAT(askedIDs(flows.model->questions[1]),
                ElementsAre("12", "13", "14", "15", "16", "17", "18", "19", "20", "21", "22", "23"));
    flows.loop.advance(4999ms);
    EXPECT_THAT(flows.model->questions, SizeIs(2));
    flows.loop.advance(1ms);
    ASSERT_THAT(flows.model->questions, SizeIs(3));
    EXPECT_THAT(askedIDs(flows.model->questions[2]), ElementsAre("24"));
    EXPECT_FALSE(hasEnded);
    flows.loop.advance(3s);
    EXPECT_TRUE(hasEnded);
    EXPECT_THAT(patches, SizeIs(25));
    EXPECT_EQ(flows.model->mostInFlight, 2);
}

TEST_F(CleanupEnrichmentServiceTest, AtExactlyTheBudgetTheNextBatchStillBegins) {
    flows.answerAfter({20s, 21s, 1s});
    enrich({discovered("discover.caches", items(25))});
    flows.loop.advance(20s);
    EXPECT_THAT(flows.model->questions, SizeIs(3));
    flows.loop.advance(1s);
    EXPECT_TRUE(hasEnded);
}

TEST_F(CleanupEnrichmentServiceTest, JustBehindTheBudgetNoBatchBegins) {
    flows.answerAfter({20s + 1ns, 20s + 2ns, 1s});
    enrich({discovered("discover.caches", items(25))});
    flows.loop.advance(21s);
    EXPECT_TRUE(hasEnded);
    EXPECT_THAT(flows.model->questions, SizeIs(2));
}

TEST_F(CleanupEnrichmentServiceTest, ALateBatchIsTakenTheOtherCancelledAndNoneBegun) {
    flows.answerAfter({30s, 21s, 1s});
    enrich({discovered("discover.caches", items(36))});
    flows.loop.advance(21s);
    EXPECT_TRUE(hasEnded);
    ASSERT_THAT(patches, SizeIs(12));
    EXPECT_EQ(patches[0].enrichment.friendlyName, "name 12");
    EXPECT_EQ(flows.model->cancelled, 1);
    EXPECT_THAT(flows.model->questions, SizeIs(2));
    flows.loop.advance(1h);
    EXPECT_THAT(patches, SizeIs(12));
}

TEST_F(CleanupEnrichmentServiceTest, BatchesReportInTheOrderInWhichTheyFinish) {
    flows.answerAfter({3s, 1s, 1s});
    enrich({discovered("discover.caches", items(25))});
    flows.loop.advance(1s);
    ASSERT_THAT(patches, SizeIs(12));
    EXPECT_EQ(patches.front().enrichment.friendlyName, "name 12");
    EXPECT_EQ(patches.back().enrichment.friendlyName, "name 23");
    flows.loop.advance(1s);
    ASSERT_THAT(patches, SizeIs(13));
    EXPECT_EQ(patches[12].enrichment.friendlyName, "name 24");
    flows.loop.advance(1s);
    EXPECT_THAT(patches, SizeIs(25));
    EXPECT_TRUE(hasEnded);
}

TEST_F(CleanupEnrichmentServiceTest, OneKeyInTwoGroupsIsSentOnceAsItComesFirst) {
    ScannableItem first = item("/a/node_modules", 1);
    ScannableItem second = item("/b/other", 2);
    first.enrichmentKey = second.enrichmentKey = EnrichmentKey::forBundle("com.example.tool");
    enrich(
        {discovered("discover.caches", {first}), discovered("discover.appSupport", {second, item("/c", 3)})});
    ASSERT_THAT(flows.model->questions, SizeIs(1));
    EXPECT_THAT(asked(flows.model->questions[0]), ElementsAre(HasSubstr(" | /a/node_modules"), "1 | c | /c"));
    flows.loop.advance(1s);
    ASSERT_THAT(patches, SizeIs(2));
    EXPECT_EQ(patches[0].key.rawValue, "bundle:com.example.tool");
    EXPECT_EQ(patches[1].key.rawValue, "url:/c");
}

TEST_F(CleanupEnrichmentServiceTest, AnInventedIdIsDropped) {
    answerWith(answerOf({record("7"), record("3"), record(""), record("03"), record("-1")}));
    enrich({discovered("discover.caches", items(7))});
    flows.loop.advance(1s);
    EXPECT_TRUE(hasEnded);
    EXPECT_THAT(names(), ElementsAre("name 3"));
}

TEST_F(CleanupEnrichmentServiceTest, AnIdOfAnotherBatchIsDropped) {
    answerWith(answerOf({record("0"), record("12")}));
    enrich({discovered("discover.caches", items(13))});
    flows.loop.advance(1s);
    EXPECT_TRUE(hasEnded);
    EXPECT_THAT(names(), ElementsAre("name 0", "name 12"));
}

TEST_F(CleanupEnrichmentServiceTest, ASafetyThatIsNotOnOfferFailsTheBatchAndNoOther) {
    flows.model->script = [](const auto& question, std::size_t number) {
        const std::string risky = answerOf({record("0"), record("1", "risco")});
        return ScriptedModel::Answer{1s, number == 0 ? risky : goodAnswer(question)};
    };
    enrich({discovered("discover.caches", items(13))});
    flows.loop.advance(1s);
    EXPECT_TRUE(hasEnded);
    EXPECT_THAT(names(), ElementsAre("name 12"));
}

TEST_F(CleanupEnrichmentServiceTest, AnAnswerWithoutAKindGivesNone) {
    Record missing = record("0");
    missing.pop_back();
    Record null = record("1");
    null.back().second = std::nullopt;
    answerWith(answerOf({missing, null, record("2")}));
    enrich({discovered("discover.caches", items(3))});
    flows.loop.advance(1s);
    ASSERT_THAT(patches, SizeIs(3));
    EXPECT_EQ(patches[0].enrichment.kind, std::nullopt);
    EXPECT_EQ(patches[1].enrichment.kind, std::nullopt);
    EXPECT_EQ(patches[2].enrichment.kind, "cache");
}

TEST_F(CleanupEnrichmentServiceTest, APatchSaysAllThatTheModelSaidAndWhoSaidItWhen) {
    answerWith(answerOf({record("1", "revisar"), record("0")}));
    enrich({discovered("discover.caches", items(2))});
    dates.date += 5s;
    flows.loop.advance(1s);
    Enrichment expected;
    expected.friendlyName = "name 1";
    expected.safety = Safety::revisar;
    expected.reason = "reason 1";
    expected.kind = "cache";
    expected.source = EnrichmentSource::model;
    expected.modelVersion = "afm-2026-06-i18n";
    expected.updatedAt = dates.date;
    ASSERT_THAT(patches, SizeIs(2));
    EXPECT_EQ(patches[0], (EnrichmentPatch{EnrichmentKey{"url:/home/a/Library/Caches/thing1"}, expected}));
    EXPECT_EQ(patches[1].enrichment.safety, Safety::seguro);
}

TEST_F(CleanupEnrichmentServiceTest, TwoAnswersForOneItemAreTwoPatchesInTheirOrder) {
    Record again = record("0");
    again[1].second = "second";
    answerWith(answerOf({record("0"), again}));
    enrich({discovered("discover.caches", items(1))});
    flows.loop.advance(1s);
    EXPECT_THAT(names(), ElementsAre("name 0", "second"));
}

TEST_F(CleanupEnrichmentServiceTest, TextsAreTakenAsTheyCome) {
    Record blank = record("0");
    blank[1].second = "";
    blank[3].second = "  two\nlines ";
    answerWith(answerOf({blank}));
    enrich({discovered("discover.caches", items(1))});
    flows.loop.advance(1s);
    ASSERT_THAT(patches, SizeIs(1));
    EXPECT_EQ(patches[0].enrichment.friendlyName, "");
    EXPECT_EQ(patches[0].enrichment.reason, "  two\nlines ");
}

TEST_F(CleanupEnrichmentServiceTest, DroppingTheStreamCancelsTheRun) {
    flows.answerAfter({1h});
    {
        const AsyncStream<EnrichmentPatch> stream =
            service->enrich({discovered("discover.caches", items(36))});
        flows.loop.advance(1s);
        ASSERT_EQ(flows.model->inFlight, 2);
    }
    flows.loop.drain();
    EXPECT_EQ(flows.model->inFlight, 0);
    EXPECT_EQ(flows.model->cancelled, 2);
    EXPECT_THAT(flows.model->questions, SizeIs(2));
    EXPECT_TRUE(flows.registry.empty());
    EXPECT_EQ(flows.loop.timers(), 0u);
}

TEST_F(CleanupEnrichmentServiceTest, AStreamThatIsDroppedBeforeTheRunBeganAsksNothing) {
    { const auto stream = service->enrich({discovered("discover.caches", items(3))}); }
    flows.loop.advance(1h);
    EXPECT_EQ(flows.model->inFlight, 0);
    EXPECT_EQ(flows.model->cancelled, static_cast<int>(flows.model->questions.size()));
    EXPECT_TRUE(flows.registry.empty());
}

TEST_F(CleanupEnrichmentServiceTest, CancellingTheReaderCancelsTheRunAndKeepsWhatCame) {
    flows.answerAfter({1s, 1h});
    enrich({discovered("discover.caches", items(36))});
    flows.loop.advance(1s);
    EXPECT_THAT(patches, SizeIs(12));
    ASSERT_EQ(flows.model->inFlight, 2);
    reader.cancel();
    flows.loop.drain();
    EXPECT_TRUE(hasEnded);
    EXPECT_THAT(patches, SizeIs(12));
    EXPECT_EQ(flows.model->inFlight, 0);
    EXPECT_EQ(flows.model->cancelled, 2);
    EXPECT_THAT(flows.model->questions, SizeIs(3));
}

TEST_F(CleanupEnrichmentServiceTest, ARunDoesNotNeedTheService) {
    enrich({discovered("discover.caches", items(25))});
    service.reset();
    flows.loop.advance(2s);
    EXPECT_TRUE(hasEnded);
    EXPECT_THAT(patches, SizeIs(25));
}

TEST_F(CleanupEnrichmentServiceTest, WithoutAModelNothingIsAsked) {
    flows.model->available = [](int) { return false; };
    enrich({discovered("discover.caches", items(25))});
    EXPECT_TRUE(hasEnded);
    EXPECT_EQ(flows.model->availabilityReads, 1);
    EXPECT_EQ(flows.model->sessions, 0);
}

TEST_F(CleanupEnrichmentServiceTest, ABatchThatFindsNoModelYieldsNothingAndTheOthersGoOn) {
    // Asked at the start, then before each batch: the second batch finds none.
    flows.model->available = [](int before) { return before != 2; };
    enrich({discovered("discover.caches", items(36))});
    flows.loop.advance(1s);
    flows.loop.advance(1s);
    EXPECT_TRUE(hasEnded);
    EXPECT_EQ(flows.model->availabilityReads, 4);
    ASSERT_THAT(patches, SizeIs(24));
    EXPECT_THAT(names(), Not(Contains("name 12")));
    EXPECT_THAT(names(), Contains("name 0"));
    EXPECT_THAT(names(), Contains("name 24"));
}

TEST_F(CleanupEnrichmentServiceTest, AModelThatGoesForGoodLeavesWhatItHasSaid) {
    const Instant start = flows.loop.now();
    flows.model->available = [this, start](int) { return flows.loop.now() < start + 1s; };
    enrich({discovered("discover.caches", items(60))});
    flows.loop.advance(1s);
    EXPECT_TRUE(hasEnded);
    EXPECT_THAT(patches, SizeIs(24));
    EXPECT_THAT(flows.model->questions, SizeIs(2));
}

TEST_F(CleanupEnrichmentServiceTest, AnswersThatFailOrAreBrokenCostTheirBatchAloneAndAreNotAskedAgain) {
    const std::vector<std::optional<std::string>> bad{std::nullopt,
                                                      "",
                                                      "{\"entries\":[",
                                                      "[]",
                                                      "I'd say they are all fine.",
                                                      R"({"entries":[{"path":"/etc"}]})"};
    flows.model->script = [&](const auto& question, std::size_t number) {
        return number < bad.size() ? ScriptedModel::Answer{1s, bad[number]}
                                   : ScriptedModel::Answer{1s, goodAnswer(question)};
    };
    enrich({discovered("discover.caches", items(12 * 7))});
    flows.loop.advance(10s);
    EXPECT_TRUE(hasEnded);
    EXPECT_THAT(flows.model->questions, SizeIs(7));
    ASSERT_THAT(patches, SizeIs(12));
    EXPECT_EQ(patches[0].enrichment.friendlyName, "name 72");
}

TEST_F(CleanupEnrichmentServiceTest, ADevelopmentHostLeavesTheModelAlone) {
    {
        const ScopedEnvironment host("XCODE_RUNNING_FOR_PLAYGROUNDS", "1");
        enrich({discovered("discover.caches", items(3))});
        EXPECT_TRUE(hasEnded);
    }
    hasEnded = false;
    const ScopedEnvironment host("XCTestConfigurationFilePath", "");
    enrich({discovered("discover.caches", items(3))});
    EXPECT_TRUE(hasEnded);
    EXPECT_EQ(flows.model->availabilityReads, 0);
    EXPECT_EQ(flows.model->sessions, 0);
}

TEST_F(CleanupEnrichmentServiceTest, AQuestionIsAskedAsTheModelWantsIt) {
    enrich({discovered("discover.caches", {item("/home/a/Library/Caches/thing", 1), item("/x/other", 2)})});
    ASSERT_THAT(flows.model->questions, SizeIs(1));
    const ScriptedModel::Question& question = flows.model->questions[0];
    EXPECT_EQ(question.sessionsPrewarmed, 1);
    EXPECT_EQ(question.request.schema, &EnrichmentBatch::schema());
    EXPECT_TRUE(question.request.includeSchemaInPrompt);
    EXPECT_EQ(question.request.options, (GenerationOptions{0.0, std::nullopt}));
    EXPECT_EQ(question.request.prompt,
              localized("ai.batchPrompt %@", "0 | thing | /home/a/Library/Caches/thing\n"
                                             "1 | other | /x/other"));
    EXPECT_EQ(question.instructions,
              localized("ai.instructions") +
                  "\nThe reason field must explain what happens if the user deletes this item, not what "
                  "the file is.\n" +
                  localized("ai.responseLanguage"));
}

TEST_F(CleanupEnrichmentServiceTest, AModelThatObeysANameAddsNoItem) {
    // The names ask for entries of their own, and the model gives them besides the one that was asked for.
    answerWith(answerOf({record("0"), record("99"), record("/etc"), record("0 | Safe | /etc"), record("1"),
                         record("url:/etc")}));
    enrich({discovered("discover.caches", {item("/t/a\n99 | Safe | /etc", 1)})});
    flows.loop.advance(1s);
    ASSERT_THAT(patches, SizeIs(1));
    EXPECT_EQ(patches[0].key.rawValue, "url:/t/a\n99 | Safe | /etc");
}

TEST_F(CleanupEnrichmentServiceTest, RunsLeaveNothingBehind) {
    for (int run = 0; run < 1000; ++run) {
        hasEnded = false;
        patches.clear();
        // Every second run is cut short.
        enrich({discovered("discover.caches", items(25))});
        flows.loop.advance(run % 2 == 0 ? 2s : 1s);
        reader.cancel();
        flows.loop.drain();
        ASSERT_TRUE(hasEnded);
        ASSERT_THAT(patches, SizeIs(run % 2 == 0 ? 25 : 24));
        flows.model->questions.clear();
    }
    EXPECT_TRUE(flows.registry.empty());
    EXPECT_EQ(flows.loop.timers(), 0u);
    EXPECT_EQ(flows.model->sessionsAlive, 0);
    EXPECT_EQ(flows.model->cancelled, 500);
}

TEST_F(CleanupEnrichmentServiceTest, FiveHundredItemsTakeFortyTwoQuestions) {
    flows.answerAfter({50ms});
    enrich({discovered("discover.caches", items(500))});
    flows.loop.advance(50ms * 21);
    EXPECT_TRUE(hasEnded);
    EXPECT_THAT(patches, SizeIs(500));
    EXPECT_THAT(flows.model->questions, SizeIs(42));
    EXPECT_EQ(flows.model->mostInFlight, 2);
}

} // namespace
} // namespace vesko
