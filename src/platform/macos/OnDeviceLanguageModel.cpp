#include "platform/macos/OnDeviceLanguageModel.h"

#include "base/JsonWriter.h"
#include "concurrency/Task.h"
#include "concurrency/Wakeup.h"
#include "enrichment/PromptText.h"
#include "platform/macos/OnDeviceModel.h"
#include <chrono>
#include <coroutine>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <utility>

namespace vesko {
namespace {

constexpr std::chrono::seconds patience(60);

struct FreeSession {
    void operator()(OnDeviceSession* session) const { onDeviceSessionFree(session); }
};
using OwnedSession = std::unique_ptr<OnDeviceSession, FreeSession>;

/// The answer's form as OnDeviceModel.h wants to be told it.
std::string formOf(const AnswerSchema& schema) {
    JsonWriter writer;
    writer.beginObject();
    writer.key("name");
    writer.string(schema.name);
    writer.key("entryName");
    writer.string(schema.entryName);
    writer.key("properties");
    writer.beginArray();
    for (const SchemaProperty& property : schema.properties) {
        writer.beginObject();
        writer.key("name");
        writer.string(property.name);
        if (!property.description.empty()) {
            writer.key("description");
            writer.string(property.description);
        }
        if (property.choices) {
            writer.key("choices");
            writer.beginObject();
            writer.key("name");
            writer.string(property.choices->name);
            writer.key("words");
            writer.beginArray();
            for (const std::string_view word : property.choices->words) writer.string(word);
            writer.endArray();
            writer.endObject();
        }
        writer.key("optional");
        writer.boolean(property.isOptional);
        writer.endObject();
    }
    writer.endArray();
    writer.endObject();
    return writer.take();
}

OnDeviceOptions optionsOf(const ModelRequest& request) {
    return {.includesSchemaInPrompt = request.includeSchemaInPrompt,
            .hasTemperature = request.options.temperature.has_value(),
            .temperature = request.options.temperature.value_or(0),
            .hasMaximumResponseTokens = request.options.maximumResponseTokens.has_value(),
            .maximumResponseTokens = request.options.maximumResponseTokens.value_or(0)};
}

/// Where the answer is put down, on whatever thread it comes; outlives the one who asked.
struct Answer {
    std::mutex mutex;
    std::optional<std::string> json;
    std::shared_ptr<Wakeup> asking;

    static void hear(void* receiver, const char* json) {
        const std::unique_ptr<std::shared_ptr<Answer>> answer(
            static_cast<std::shared_ptr<Answer>*>(receiver));
        {
            const std::lock_guard lock((*answer)->mutex);
            if (json) (*answer)->json = json;
        }
        (*answer)->asking->fire(Wakeup::Reason::Ready);
    }
};

/// One question; awaiting it gives the answer.
class Question {
public:
    Question(OnDeviceSession* session, ModelRequest request)
        : session_(session), request_(std::move(request)) {}
    Question(const Question&) = delete;
    Question& operator=(const Question&) = delete;
    ~Question() {
        if (timer_) clock_->cancel(*timer_);
    }

    bool await_ready() const noexcept { return false; }
    template <class Promise> bool await_suspend(std::coroutine_handle<Promise> asking) {
        return start(asking, asking.promise().context);
    }
    std::string await_resume() {
        onStop_.reset();
        if (!answer_) throw Cancelled{};
        if (answer_->asking->cancelled()) {
            onDeviceSessionCancel(session_);
            throw Cancelled{};
        }
        const std::lock_guard lock(answer_->mutex);
        if (!answer_->json) throw std::runtime_error("no answer of the system's model");
        return std::move(*answer_->json);
    }

private:
    bool start(std::coroutine_handle<> asking, const TaskContext& context) {
        if (context.stop.stopRequested()) return false;
        const auto wakeup = std::make_shared<Wakeup>(asking, *context.home);
        answer_ = std::make_shared<Answer>();
        answer_->asking = wakeup;
        clock_ = context.clock;
        timer_ = clock_->at(clock_->now() + patience, [this] {
            onDeviceSessionCancel(session_);
            answer_->asking->fire(Wakeup::Reason::Ready);
        });
        const std::string prompt = promptText(request_.prompt);
        const std::string form = formOf(*request_.schema);
        auto receiver = std::make_unique<std::shared_ptr<Answer>>(answer_);
        onDeviceSessionRespond(session_, prompt.c_str(), form.c_str(), optionsOf(request_), &Answer::hear,
                               receiver.release());
        onStop_.emplace(context.stop, [wakeup] { wakeup->fire(Wakeup::Reason::Cancelled); });
        wakeup->arm();
        return true;
    }

    OnDeviceSession* session_;
    ModelRequest request_;
    std::shared_ptr<Answer> answer_; ///< none: the task was cancelled before
    Clock* clock_ = nullptr;
    std::optional<Clock::Id> timer_;
    std::optional<StopCallback> onStop_;
};

class Session final : public LanguageModelSession {
public:
    explicit Session(const std::string& instructions)
        : session_(onDeviceSessionMake(promptText(instructions).c_str())) {}

    void prewarm() override { onDeviceSessionPrewarm(session_.get()); }

    Task<std::string> respond(ModelRequest request) override {
        if (!request.schema) throw std::runtime_error("no schema");
        Question question(session_.get(), std::move(request));
        std::string answer = co_await question;
        co_return answer;
    }

private:
    OwnedSession session_;
};

} // namespace

Task<ModelAvailability> OnDeviceLanguageModel::availability() {
    co_return onDeviceModelIsAvailable() ? ModelAvailability::available : ModelAvailability::unavailable;
}

std::unique_ptr<LanguageModelSession> OnDeviceLanguageModel::session(std::string instructions) {
    return std::make_unique<Session>(instructions);
}

} // namespace vesko
