#include "platform/macos/OnDeviceLanguageModel.h"
#include "concurrency/Concurrency.h"
#include "enrichment/EnrichmentBatch.h"
#include "platform/macos/OnDeviceModel.h"
#include "support/ManualLoop.h"
#include <gtest/gtest.h>
#include <thread>

/// The system's model, played by the test: what the Swift source does on a Mac, without the model.
struct OnDeviceSession {
    std::string instructions;
    int prewarmed = 0;
    int questions = 0;
};

namespace {

struct Played {
    bool isAvailable = true;
    int sessions = 0; ///< that are there now
    int cancelled = 0;
    std::string instructions;
    int prewarmed = 0;
    std::string prompt;
    std::string schema;
    OnDeviceOptions options{};
    OnDeviceAnswered answered = nullptr;
    void* receiver = nullptr;
    std::optional<std::string> answersAtOnce;
    bool isSlowToGiveUp = false; ///< tells that it gave up only when the test has it answer

    /// As the contract has it: each question is answered once, at the latest when it was given up.
    void answer(const char* json) {
        if (const auto hears = std::exchange(answered, nullptr))
            hears(std::exchange(receiver, nullptr), json);
    }
};

Played played;

} // namespace

extern "C" {

bool onDeviceModelIsAvailable(void) { return played.isAvailable; }

OnDeviceSession* onDeviceSessionMake(const char* instructions) {
    ++played.sessions;
    played.instructions = instructions;
    return new OnDeviceSession{instructions};
}

void onDeviceSessionPrewarm(OnDeviceSession* session) { played.prewarmed = ++session->prewarmed; }

void onDeviceSessionRespond(OnDeviceSession* session, const char* prompt, const char* schema,
                            OnDeviceOptions options, OnDeviceAnswered answered, void* receiver) {
    EXPECT_EQ(++session->questions, 1);
    played.prompt = prompt;
    played.schema = schema;
    played.options = options;
    played.answered = answered;
    played.receiver = receiver;
    if (played.answersAtOnce) played.answer(played.answersAtOnce->c_str());
}

void onDeviceSessionCancel(OnDeviceSession*) {
    ++played.cancelled;
    if (!played.isSlowToGiveUp) played.answer(nullptr);
}

void onDeviceSessionFree(OnDeviceSession* session) {
    --played.sessions;
    if (!played.isSlowToGiveUp) played.answer(nullptr);
    delete session;
}
}

namespace vesko {
namespace {

using namespace std::chrono_literals;

class OnDeviceLanguageModelTest : public ::testing::Test {
protected:
    OnDeviceLanguageModelTest() { played = Played(); }
    ~OnDeviceLanguageModelTest() override { EXPECT_EQ(played.sessions, 0); }

    TaskHandle<void> ask(ModelRequest request = sample()) {
        return spawn(context, [this, request]() -> Task<void> {
            try {
                const std::unique_ptr<LanguageModelSession> session = model.session("caf\xe9");
                session->prewarm();
                answer = co_await session->respond(request);
            } catch (const Cancelled&) {
                wasCancelled = true;
            } catch (const std::exception&) {
                failed = true;
            }
        });
    }
    static ModelRequest sample() {
        ModelRequest request;
        request.prompt = "0 | a\xff | /a\n1 | b | /b";
        request.schema = &EnrichmentBatch::schema();
        request.options.temperature = 0.0;
        return request;
    }

    ManualLoop loop;
    TaskContext context{&loop, &loop, &loop, {}, nullptr};
    OnDeviceLanguageModel model;
    std::optional<std::string> answer;
    bool wasCancelled = false;
    bool failed = false;
};

TEST_F(OnDeviceLanguageModelTest, IsAvailableWhenTheSystemSaysSo) {
    std::vector<ModelAvailability> found;
    for (const bool isAvailable : {true, false}) {
        played.isAvailable = isAvailable;
        spawn(context, [&]() -> Task<void> {
            const ModelAvailability now = co_await model.availability();
            found.push_back(now);
        });
        loop.drain();
    }
    EXPECT_EQ(found, (std::vector{ModelAvailability::available, ModelAvailability::unavailable}));
}

TEST_F(OnDeviceLanguageModelTest, AQuestionIsHandedOnWithItsFormAndOptions) {
    played.answersAtOnce = R"({"entries":[]})";
    const auto task = ask();
    loop.drain();
    ASSERT_TRUE(task.done());
    EXPECT_EQ(answer, R"({"entries":[]})");
    EXPECT_EQ(played.instructions, "caf\\xE9");
    EXPECT_EQ(played.prewarmed, 1);
    EXPECT_EQ(played.prompt, "0 | a\\xFF | /a\n1 | b | /b");
    EXPECT_TRUE(played.options.includesSchemaInPrompt);
    EXPECT_TRUE(played.options.hasTemperature);
    EXPECT_EQ(played.options.temperature, 0.0);
    EXPECT_FALSE(played.options.hasMaximumResponseTokens);
    EXPECT_EQ(
        played.schema,
        R"({"name":"EnrichmentBatch","entryName":"EnrichedEntry","properties":[)"
        R"({"name":"id","description":"The same id received in the input, used to match the response.","optional":false},)"
        R"({"name":"friendlyName","description":"Short human-readable name.","optional":false},)"
        R"({"name":"safety","description":"seguro = rebuildable junk; revisar = may contain user data.",)"
        R"("choices":{"name":"DraftSafety","words":["seguro","revisar"]},"optional":false},)"
        R"({"name":"reason","description":"Short reason in the user's language (English or Brazilian Portuguese).","optional":false},)"
        R"({"name":"kind","description":"Optional category (e.g. cache, app, log).","optional":true}]})");
}

TEST_F(OnDeviceLanguageModelTest, OptionsThatAreNotGivenAreNotHandedOn) {
    played.answersAtOnce = "{}";
    ModelRequest request = sample();
    request.includeSchemaInPrompt = false;
    request.options = {.temperature = std::nullopt, .maximumResponseTokens = 300};
    ask(request);
    loop.drain();
    EXPECT_FALSE(played.options.includesSchemaInPrompt);
    EXPECT_FALSE(played.options.hasTemperature);
    EXPECT_TRUE(played.options.hasMaximumResponseTokens);
    EXPECT_EQ(played.options.maximumResponseTokens, 300);
}

TEST_F(OnDeviceLanguageModelTest, AnAnswerOfAnotherThreadComesHome) {
    const auto task = ask();
    loop.drain();
    EXPECT_FALSE(task.done());
    std::thread elsewhere([] { played.answer("late"); });
    elsewhere.join();
    EXPECT_FALSE(answer) << "nothing of ours runs over there";
    loop.drain();
    EXPECT_EQ(answer, "late");
    EXPECT_EQ(loop.timers(), 0u);
}

TEST_F(OnDeviceLanguageModelTest, AFailureIsNoAnswer) {
    const auto task = ask();
    loop.drain();
    played.answer(nullptr);
    loop.drain();
    EXPECT_TRUE(task.done());
    EXPECT_TRUE(failed);
}

TEST_F(OnDeviceLanguageModelTest, CancellingGivesTheQuestionUpAndTheSessionGoes) {
    const auto task = ask();
    loop.drain();
    task.cancel();
    loop.drain();
    EXPECT_TRUE(task.done());
    EXPECT_TRUE(wasCancelled);
    EXPECT_EQ(played.cancelled, 1);
    EXPECT_EQ(played.sessions, 0);
}

TEST_F(OnDeviceLanguageModelTest, AnAnswerThatComesWhenItsSessionIsGoneIsHeardByNobody) {
    played.isSlowToGiveUp = true;
    const auto task = ask();
    loop.drain();
    task.cancel();
    loop.drain();
    ASSERT_TRUE(wasCancelled);
    ASSERT_EQ(played.sessions, 0);
    ASSERT_NE(played.answered, nullptr) << "it is still to come";
    std::thread elsewhere([] { played.answer(R"({"entries":[]})"); });
    elsewhere.join();
    loop.drain();
    EXPECT_FALSE(answer);
}

TEST_F(OnDeviceLanguageModelTest, AnAnswerAfterItsMinuteIsHeardByNobody) {
    played.isSlowToGiveUp = true;
    const auto task = ask();
    loop.advance(60s);
    ASSERT_TRUE(task.done());
    EXPECT_TRUE(failed);
    ASSERT_NE(played.answered, nullptr) << "it is still to come";
    played.answer(R"({"entries":[]})");
    loop.drain();
    EXPECT_FALSE(answer);
}

TEST_F(OnDeviceLanguageModelTest, AnAnswerOfAnotherFormIsHandedOnAsItIs) {
    for (const std::string form : {R"({"entries":"none"})", R"(["entries"])", "", "caf\xe9"}) {
        played.answersAtOnce = form;
        answer.reset();
        ask();
        loop.drain();
        EXPECT_EQ(answer, form);
    }
    EXPECT_FALSE(failed);
}

TEST_F(OnDeviceLanguageModelTest, ACancelledTaskAsksNothing) {
    const auto task = spawn(context, [this]() -> Task<void> {
        try {
            co_await sleepFor(1h);
        } catch (const Cancelled&) {
            failed = false;
        }
        const std::unique_ptr<LanguageModelSession> session = model.session("");
        try {
            answer = co_await session->respond(sample());
        } catch (const Cancelled&) {
            wasCancelled = true;
        }
    });
    task.cancel();
    loop.drain();
    EXPECT_TRUE(wasCancelled);
    EXPECT_TRUE(played.prompt.empty());
}

TEST_F(OnDeviceLanguageModelTest, AModelThatHangsIsGivenUpAfterAMinute) {
    const auto task = ask();
    loop.advance(59s);
    EXPECT_FALSE(task.done());
    loop.advance(1s);
    EXPECT_TRUE(task.done());
    EXPECT_TRUE(failed);
    EXPECT_EQ(played.cancelled, 1);
}

} // namespace
} // namespace vesko
