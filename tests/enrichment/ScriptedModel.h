#pragma once
#include "concurrency/Concurrency.h"
#include "enrichment/LanguageModel.h"
#include "support/ManualLoop.h"
#include "support/ScopedEnvironment.h"
#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace vesko::testing {

using namespace std::chrono_literals;

/// A language model that a test writes the answers of, on the loop's virtual time, and that remembers all
/// that was asked of it.
class ScriptedModel final : public LanguageModel {
public:
    struct Question {
        std::string instructions;
        ModelRequest request;
        Instant asked;
        int sessionsPrewarmed = 0; ///< how often its session was told to get ready before it
        int session = 0;           ///< which one, from 0
    };
    struct Answer {
        Duration after = Duration::zero();
        std::optional<std::string> text; ///< nothing: it fails
    };

    explicit ScriptedModel(const Clock& clock) : clock_(clock) {}

    /// Asked with the number of the question, from 0.
    std::function<Answer(const Question&, std::size_t)> script;
    /// Asked each time, with how often it was asked before.
    std::function<bool(int)> available = [](int) { return true; };
    /// How long that answer takes.
    Duration availableAfter = Duration::zero();

    std::vector<Question> questions;
    int availabilityReads = 0;
    int sessions = 0;
    int sessionsAlive = 0;
    int inFlight = 0;
    int mostInFlight = 0;
    int cancelled = 0;

    Task<ModelAvailability> availability() override {
        const bool is = available(availabilityReads++);
        if (availableAfter > Duration::zero()) co_await sleepFor(availableAfter);
        co_return is ? ModelAvailability::available : ModelAvailability::unavailable;
    }
    std::unique_ptr<LanguageModelSession> session(std::string instructions) override {
        return std::make_unique<Session>(*this, std::move(instructions), sessions++);
    }

private:
    class Session final : public LanguageModelSession {
    public:
        Session(ScriptedModel& model, std::string instructions, int number)
            : model_(model), instructions_(std::move(instructions)), number_(number) {
            ++model_.sessionsAlive;
        }
        Session(const Session&) = delete;
        Session& operator=(const Session&) = delete;
        ~Session() override { --model_.sessionsAlive; }
        void prewarm() override { ++prewarmed_; }
        Task<std::string> respond(ModelRequest request) override {
            return model_.answer(
                {instructions_, std::move(request), model_.clock_.now(), prewarmed_, number_});
        }

    private:
        ScriptedModel& model_;
        const std::string instructions_;
        const int number_;
        int prewarmed_ = 0;
    };

    Task<std::string> answer(Question question) {
        const std::size_t number = questions.size();
        questions.push_back(question);
        const Answer scripted = script(question, number);
        mostInFlight = std::max(mostInFlight, ++inFlight);
        try {
            co_await sleepFor(scripted.after);
        } catch (const Cancelled&) {
            ++cancelled;
            --inFlight;
            throw;
        }
        --inFlight;
        if (!scripted.text) throw std::runtime_error("the model fails");
        co_return *scripted.text;
    }

    const Clock& clock_;
};

/// What the flows of a test run on: one loop for everything, stepped by hand, in no development host.
struct ModelFlows {
    const ScopedEnvironment noPlayground{"XCODE_RUNNING_FOR_PLAYGROUNDS", std::nullopt};
    const ScopedEnvironment noTestHost{"XCTestConfigurationFilePath", std::nullopt};
    ManualLoop loop;
    TaskRegistry registry;
    TaskContext context{&loop, &loop, &loop, {}, &registry};
    std::shared_ptr<ScriptedModel> model = std::make_shared<ScriptedModel>(loop);
    /// What a model that does as it is told answers.
    std::function<std::string(const ScriptedModel::Question&)> goodAnswer;

    /// Good answers, each question's after its own time; the last time holds for all that follow.
    void answerAfter(std::vector<Duration> times) const {
        model->script = [good = goodAnswer, times = std::move(times)](const auto& question, std::size_t at) {
            return ScriptedModel::Answer{times[std::min(at, times.size() - 1)], good(question)};
        };
    }
};

} // namespace vesko::testing
