#include "app/ModelPasses.h"

#include "enrichment/ModelAnswers.h"
#include "enrichment/ScriptedModel.h"
#include "orchestration/CleanupFixture.h"
#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vesko::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;

/// The view model with both services over a model that the test writes the answers of.
class ModelPassesTest : public CleanupTest {
protected:
    ModelPassesTest() {
        model_->script = [](const ScriptedModel::Question& question, std::size_t) {
            return ScriptedModel::Answer{1s, goodAnswer(question)};
        };
        passes->joinTo(parts);
        make();
        passes->follow(model);
        finds({discoveries({item("/c/x", 300'000'000), item("/c/y", 20'000'000)})});
    }
    ~ModelPassesTest() override { passes.reset(); }

    static CleanupGroup discoveries(std::vector<ScannableItem> items) {
        return group("discover.caches", std::move(items), Safety::revisar);
    }
    static bool isReview(const ScriptedModel::Question& question) {
        return question.request.prompt.contains(groupsAnnounced);
    }
    /// Names for everything; "/c/y" belongs in another group.
    static std::string goodAnswer(const ScriptedModel::Question& question) {
        if (isReview(question)) {
            std::vector<Record> moves;
            for (const std::string& line : reviewedLines(question.request.prompt))
                if (line.contains("/c/y"))
                    moves.push_back(reviewed(idsOf({line})[0], "reclassify", "cache.npm"));
            return answerOf(moves);
        }
        std::vector<Record> names;
        for (const std::string& id : idsOf(linesBehind(question.request.prompt, "Judge")))
            names.push_back({{"id", id},
                             {"friendlyName", "name " + id},
                             {"safety", "seguro"},
                             {"reason", "reason " + id},
                             {"kind", std::nullopt}});
        return answerOf(names);
    }
    void wait(Duration time) {
        loop.advance(time);
        // The review collects, and its outcome is judged, on a worker.
        loop.waitFor([&] { return registry.empty(); }, std::chrono::milliseconds(100));
    }
    std::string nameOf(const std::string& path) const {
        const auto entry = model->enrichmentStore().lookup(EnrichmentKey::forURL(FileURL(path)));
        return entry ? entry->friendlyName : "";
    }

    std::shared_ptr<ScriptedModel> model_ = std::make_shared<ScriptedModel>(loop);
    std::unique_ptr<ModelPasses> passes = std::make_unique<ModelPasses>(model_, context);
};

TEST_F(ModelPassesTest, AScanIsFollowedByBothPasses) {
    scan();
    EXPECT_TRUE(*model->isEnriching);
    EXPECT_TRUE(*model->isReviewing);
    for (int second = 0; second < 3; ++second) wait(1s);
    EXPECT_FALSE(model->isAIBusy());
    EXPECT_EQ(nameOf("/c/x"), "name 0");
    EXPECT_THAT(pathsOf(listed("cache.npm")), ElementsAre("/c/y"));
    EXPECT_THAT(pathsOf(listed("discover.caches")), ElementsAre("/c/x"));
    EXPECT_EQ(*model->reviewMessage, localized("review.promotedOnly %lld", 1));
}

TEST_F(ModelPassesTest, WithoutAModelNeitherPassStartsAndEvenTheTableMovesNothing) {
    model_->available = [](int) { return false; };
    finds({discoveries({item("/u/Library/Logs/x", 300'000'000)})});
    scan();
    EXPECT_FALSE(model->isAIBusy());
    wait(1min);
    EXPECT_EQ(model_->availabilityReads, 1);
    EXPECT_EQ(model_->sessions, 0);
    EXPECT_EQ(idsOf(*model->groups), std::vector<std::string>{"discover.caches"});
    EXPECT_FALSE(model->reviewMessage->has_value());
}

TEST_F(ModelPassesTest, AQuestionThatFailsCountsAsNoModel) {
    model_->available = [](int) -> bool { throw std::runtime_error("no answer"); };
    scan();
    EXPECT_FALSE(model->isAIBusy());
    EXPECT_EQ(model_->sessions, 0);
}

TEST_F(ModelPassesTest, AModelThatComesIsNoticedByTheNextScan) {
    bool isThere = false;
    model_->available = [&](int) { return isThere; };
    scan();
    isThere = true;
    wait(1h);
    EXPECT_EQ(model_->availabilityReads, 1);
    EXPECT_FALSE(model->isAIBusy());
    scan(ScanMode::validation);
    EXPECT_TRUE(model->isAIBusy());
    wait(1s);
    EXPECT_EQ(nameOf("/c/x"), "name 0");
}

TEST_F(ModelPassesTest, AModelThatGoesIsNoticedByTheNextScan) {
    scan();
    for (int second = 0; second < 3; ++second) wait(1s);
    ASSERT_FALSE(model->isAIBusy());
    model_->available = [](int) { return false; };
    const int before = model_->sessions;
    finds({discoveries({item("/c/new", 300'000'000)})});
    scan();
    EXPECT_FALSE(model->isAIBusy());
    EXPECT_EQ(model_->sessions, before);
}

TEST_F(ModelPassesTest, AnAnswerAfterTheEndOfTheScanStartsThePassesThen) {
    model_->availableAfter = 2s;
    scan();
    EXPECT_FALSE(model->isAIBusy());
    EXPECT_EQ(*model->phase, CleanupPhase::idle());
    loop.advance(2s);
    EXPECT_TRUE(*model->isEnriching);
    EXPECT_TRUE(*model->isReviewing);
}

TEST_F(ModelPassesTest, ALateNoStartsNothing) {
    model_->availableAfter = 2s;
    model_->available = [](int) { return false; };
    scan();
    loop.advance(2s);
    EXPECT_FALSE(model->isAIBusy());
}

TEST_F(ModelPassesTest, ADeletionBeforeALateAnswerKeepsThePassesAway) {
    model_->availableAfter = 2s;
    scan();
    deleteSelected();
    loop.advance(2s);
    EXPECT_FALSE(model->isAIBusy());
}

TEST_F(ModelPassesTest, ALateAnswerDuringTheNextScanWaitsForItsEnd) {
    model_->availableAfter = 2s;
    scan();
    const auto gate = findsBehindAGate(discoveries({item("/c/z")}));
    const TaskHandle<void> second = beginScan(ScanMode::validation);
    loop.advance(2s);
    EXPECT_FALSE(model->isAIBusy());
    gate->open();
    finish(second);
    EXPECT_TRUE(model->isAIBusy());
}

TEST_F(ModelPassesTest, ACancelledScanStartsNothingWheneverTheAnswerComes) {
    model_->availableAfter = 2s;
    const auto gate = findsBehindAGate(discoveries({item("/c/z")}));
    const TaskHandle<void> cancelled = beginScan();
    loop.drain();
    model->cancelScan();
    gate->open();
    finish(cancelled);
    loop.advance(2s);
    EXPECT_FALSE(model->isAIBusy());
    EXPECT_EQ(model_->availabilityReads, 1);
}

TEST_F(ModelPassesTest, ADevelopmentHostLeavesTheModelAlone) {
    const ScopedEnvironment host("XCTestConfigurationFilePath", "");
    scan();
    wait(1min);
    EXPECT_FALSE(model->isAIBusy());
    EXPECT_EQ(model_->availabilityReads, 0);
}

TEST_F(ModelPassesTest, ADeletionCancelsTheRequestsOfBothPasses) {
    scan();
    wait(0s);
    ASSERT_EQ(model_->inFlight, 2);
    deleteSelected();
    EXPECT_FALSE(model->isAIBusy());
    EXPECT_EQ(model_->inFlight, 0);
    EXPECT_EQ(model_->cancelled, 2);
    wait(1min);
    EXPECT_THAT(model_->questions, SizeIs(2));
}

TEST_F(ModelPassesTest, AModelThatDiesInTheMiddleLeavesTheRestForTheNextScan) {
    std::vector<ScannableItem> many;
    for (int i = 0; i < 30; ++i) many.push_back(item("/c/" + std::to_string(i), 2'000 - i));
    finds({discoveries(many)});
    bool isThere = true;
    bool isWell = false;
    model_->available = [&](int) { return isThere; };
    // The review's question comes between the others or behind them, as its worker is quick or slow.
    model_->script = [&](const ScriptedModel::Question& question, std::size_t) {
        const bool isGood = isWell || isReview(question) || !question.request.prompt.contains("/c/12");
        return ScriptedModel::Answer{1s, isGood ? std::optional(goodAnswer(question)) : std::nullopt};
    };
    scan();
    ASSERT_TRUE(loop.waitFor([&] { return std::ranges::count_if(model_->questions, isReview) == 1; }));
    isThere = false;
    for (int second = 0; second < 3; ++second) wait(1s);
    EXPECT_FALSE(model->isAIBusy());
    EXPECT_EQ(*model->phase, CleanupPhase::idle());
    EXPECT_FALSE(model->reviewMessage->has_value());
    isThere = isWell = true;
    model_->questions.clear();
    scan();
    const auto first = std::ranges::find_if_not(model_->questions, isReview);
    ASSERT_NE(first, model_->questions.end());
    const auto asked = linesBehind(first->request.prompt, "Judge");
    EXPECT_THAT(asked, SizeIs(12));
    EXPECT_EQ(asked[0], "0 | 12 | /c/12");
    for (int second = 0; second < 3; ++second) wait(1s);
    for (int i = 0; i < 30; ++i) EXPECT_TRUE(nameOf("/c/" + std::to_string(i)).starts_with("name ")) << i;
}

TEST_F(ModelPassesTest, AnOpenQuestionIsDroppedWithThePasses) {
    model_->availableAfter = 1h;
    scan();
    passes.reset();
    wait(0s);
    EXPECT_TRUE(registry.empty());
    EXPECT_FALSE(model->isAIBusy());
}

TEST_F(ModelPassesTest, TheViewModelIsNotKeptAlive) {
    model_->availableAfter = 2s;
    scan();
    const std::weak_ptr<CleanupViewModel> gone = model;
    model.reset();
    loop.drain();
    wait(0s);
    loop.advance(2s);
    EXPECT_TRUE(gone.expired());
    EXPECT_EQ(model_->sessions, 0);
}

} // namespace
} // namespace vesko::testing
