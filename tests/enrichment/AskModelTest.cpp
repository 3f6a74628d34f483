#include "enrichment/AskModel.h"

#include "PassSamples.h"
#include "ScriptedModel.h"
#include "enrichment/EnrichmentBatch.h"
#include "enrichment/UnavailableLanguageModel.h"
#include <gtest/gtest.h>

namespace vesko {
namespace {

using namespace vesko::testing;

struct Asked {
    bool done = false;
    std::optional<std::string> answer;
};

TaskHandle<void> ask(const ModelFlows& flows, std::shared_ptr<LanguageModel> model, Asked& asked) {
    return spawn(flows.context, [&asked, model = std::move(model)]() -> Task<void> {
        asked.answer = co_await askModel(model, "instructions", "prompt", &EnrichmentBatch::schema());
        asked.done = true;
    });
}

TEST(AskModel, EachQuestionHasAFreshSessionAndTheSameOptions) {
    ModelFlows flows;
    flows.model->script = [](const auto&, std::size_t number) {
        return ScriptedModel::Answer{1s, "answer " + std::to_string(number)};
    };
    Asked first;
    Asked second;
    ask(flows, flows.model, first);
    flows.loop.advance(1s);
    ask(flows, flows.model, second);
    flows.loop.advance(1s);
    EXPECT_EQ(first.answer, "answer 0");
    EXPECT_EQ(second.answer, "answer 1");
    ASSERT_EQ(flows.model->questions.size(), 2u);
    for (const ScriptedModel::Question& question : flows.model->questions) {
        EXPECT_EQ(question.instructions, "instructions");
        EXPECT_EQ(question.request.prompt, "prompt");
        EXPECT_EQ(question.request.schema, &EnrichmentBatch::schema());
        EXPECT_TRUE(question.request.includeSchemaInPrompt);
        EXPECT_EQ(question.request.options, (GenerationOptions{0.0, std::nullopt}));
        EXPECT_EQ(question.sessionsPrewarmed, 1);
    }
    EXPECT_EQ(flows.model->questions[0].session, 0);
    EXPECT_EQ(flows.model->questions[1].session, 1);
}

TEST(AskModel, AFailureGivesNothing) {
    ModelFlows flows;
    flows.model->script = [](const auto&, std::size_t) { return ScriptedModel::Answer{1s, std::nullopt}; };
    Asked asked;
    ask(flows, flows.model, asked);
    flows.loop.advance(1s);
    EXPECT_TRUE(asked.done);
    EXPECT_EQ(asked.answer, std::nullopt);
    EXPECT_EQ(flows.model->questions.size(), 1u);
}

TEST(AskModel, ACancelledQuestionEndsAtOnceWithNothing) {
    ModelFlows flows;
    flows.model->script = [](const auto&, std::size_t) { return ScriptedModel::Answer{1h, "late"}; };
    Asked asked;
    const auto task = ask(flows, flows.model, asked);
    flows.loop.advance(1s);
    ASSERT_EQ(flows.model->inFlight, 1);
    task.cancel();
    flows.loop.drain();
    EXPECT_TRUE(asked.done);
    EXPECT_EQ(asked.answer, std::nullopt);
    EXPECT_EQ(flows.model->cancelled, 1);
}

TEST(AskModel, WithoutAModelNothingIsAnswered) {
    ModelFlows flows;
    const auto none = std::make_shared<UnavailableLanguageModel>();
    Asked asked;
    ask(flows, none, asked);
    std::optional<bool> can;
    spawn(flows.context, [&]() -> Task<void> { can = co_await canAsk(none); });
    flows.loop.drain();
    EXPECT_TRUE(asked.done);
    EXPECT_EQ(asked.answer, std::nullopt);
    EXPECT_EQ(can, false);
}

TEST(AskModel, AModelThatFailsToSayWhetherItIsThereIsNot) {
    ModelFlows flows;
    flows.model->available = [](int) -> bool { throw std::runtime_error("no word"); };
    std::optional<bool> can;
    spawn(flows.context, [&]() -> Task<void> { can = co_await canAsk(flows.model); });
    flows.loop.drain();
    EXPECT_EQ(can, false);
}

TEST(AskModel, LineBreaksAndControlCharactersAreEscaped) {
    EXPECT_EQ(promptField("a\nb\r\nc\td"), "a\\x0Ab\\x0D\\x0Ac\\x09d");
    EXPECT_EQ(promptField(std::string("\0\x1f\x7f", 3)), "\\x00\\x1F\\x7F");
    EXPECT_EQ(promptField("\xc2\x80|\xc2\x85|\xc2\x9f"), "\\xC2\\x80|\\xC2\\x85|\\xC2\\x9F");
    EXPECT_EQ(promptField("\xe2\x80\xa8|\xe2\x80\xa9"), "\\xE2\\x80\\xA8|\\xE2\\x80\\xA9");
}

TEST(AskModel, EveryOtherByteStays) {
    for (const std::string_view text :
         {"", " | ", "a \\x0A b", "ação \xf0\x9f\x93\xa6", "\xc2\xa0\xc2\xad", "\xe2\x80\xa7\xe2\x80\xaa",
          "\xe9\x85\xff", "\xc2", "\xe2\x80", "\x85\x80\x9f", "%@"})
        EXPECT_EQ(promptField(text), text);
}

TEST(AskModel, AnEscapedFieldIsOneLineWhateverItHolds) {
    for (const std::string& name : hostileNames()) EXPECT_TRUE(isOneLine(promptField(name))) << name;
    EXPECT_FALSE(std::ranges::all_of(hostileNames(), isOneLine));
}

} // namespace
} // namespace vesko
