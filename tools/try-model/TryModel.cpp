#include "base/Paths.h"
#include "base/StringCatalog.h"
#include "concurrency/Concurrency.h"
#include "core/ProbeCatalog.h"
#include "enrichment/CleanupEnrichmentService.h"
#include "enrichment/CleanupReviewService.h"
#include "enrichment/EnrichmentBatch.h"
#include "enrichment/PlatformLanguageModel.h"
#include "enrichment/ReviewBatch.h"
#include "platform/qt/ModelServer.h"
#include "platform/qt/QtClock.h"
#include "platform/qt/QtExecutor.h"
#include <QCoreApplication>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <map>
#include <string_view>
#include <utility>

/// Sends ten fixed items through the questions of both passes to the model that the program would ask, and
/// prints what it answers. A failure, which the program keeps to itself, is told in full.
namespace vesko {
namespace {

constexpr int noModel = 1;
constexpr int wrongArgument = 2;
constexpr int poorAnswer = 3;

constexpr const char* usage =
    "usage: try-model [--portuguese] [ADDRESS]\n"
    "Asks the model that Vesko would ask, or the server at ADDRESS (http://127.0.0.1:PORT).\n"
    "Status 0: all ten items got an answer; 1: there is no model; 2: a wrong argument;\n"
    "3: an answer was missing or of no use.\n";

/// Things that a scan finds and no rule knows; names that say much, little, and nothing.
constexpr std::pair<std::string_view, std::int64_t> paths[] = {
    {"/home/ana/.cache/thumbnails", 412'000'000},
    {"/home/ana/.cache/fontconfig", 9'000'000},
    {"/home/ana/.cache/mesa_shader_cache", 260'000'000},
    {"/home/ana/.cache/pip", 1'900'000'000},
    {"/home/ana/.local/share/Trash/files/holiday 2019", 5'400'000'000},
    {"/home/ana/.local/share/photo-library-backup", 22'000'000'000},
    {"/home/ana/Downloads/disk-image.iso", 4'700'000'000},
    {"/home/ana/.config/old-editor/CachedData", 350'000'000},
    {"/home/ana/.cache/8f2c91d0", 770'000'000},
    {"/home/ana/Projects/thesis/build", 640'000'000},
};

std::vector<CleanupEnrichmentService::PendingItem> namelessItems() {
    CleanupGroup group;
    group.providerID = {"discover"};
    std::vector<ScannableItem> items;
    for (const auto& [path, size] : paths) {
        ScannableItem item;
        item.url = FileURL(std::string(path));
        item.size = size;
        item.isDirectory = true;
        item.enrichmentKey = EnrichmentKey::forURL(item.url);
        items.push_back(std::move(item));
    }
    group.items = ItemList(std::move(items));
    return CleanupEnrichmentService::pendingItems({group});
}

std::vector<PendingReviewItem> misplacedItems() {
    std::vector<ScanReviewCandidate> candidates;
    for (const auto& [path, size] : paths) {
        const FileURL url{std::string(path)};
        candidates.push_back({url, size, std::string(url.lastPathComponent()), true, std::nullopt});
    }
    return CleanupReviewService::collectPendingReviewItems({}, std::move(candidates), systemDates().now());
}

void print(std::string_view text) { std::fwrite(text.data(), 1, text.size(), stdout); }

/// The model's words are printed as one harmless line each.
std::string shown(std::string_view text) { return escapedForDisplay(text); }

class Trial {
public:
    Trial(std::shared_ptr<LanguageModel> model, TaskContext context)
        : model_(std::move(model)), context_(std::move(context)) {}

    Task<void> run() {
        const ModelAvailability found = co_await model_->availability();
        if (found != ModelAvailability::available) {
            std::fputs("No model answers here: there is nothing to try.\n", stderr);
            status_ = noModel;
            co_return;
        }
        co_await tryNames();
        co_await tryMoves();
    }
    int status() const { return status_; }

private:
    Task<std::optional<std::string>> answerTo(std::string instructions, std::string prompt,
                                              const AnswerSchema* schema) {
        ModelRequest request;
        request.prompt = std::move(prompt);
        request.schema = schema;
        request.options.temperature = 0.0;
        const Instant before = context_.clock->now();
        std::optional<std::string> answer;
        try {
            const std::unique_ptr<LanguageModelSession> session = model_->session(std::move(instructions));
            session->prewarm();
            answer = co_await session->respond(std::move(request));
        } catch (const std::exception& error) {
            fail(std::string("no answer: ") + error.what());
        }
        const auto took =
            std::chrono::duration_cast<std::chrono::milliseconds>(context_.clock->now() - before);
        print("   (" + std::to_string(took.count()) + " ms)\n");
        co_return answer;
    }

    void fail(const std::string& why) {
        print("   FAIL " + why + "\n");
        status_ = poorAnswer;
    }

    Task<void> tryNames() {
        print("Names\n");
        const std::vector<CleanupEnrichmentService::PendingItem> items = namelessItems();
        const std::optional<std::string> text =
            co_await answerTo(CleanupEnrichmentService::instructions(),
                              CleanupEnrichmentService::prompt(items), &EnrichmentBatch::schema());
        if (!text) co_return;
        const auto batch = EnrichmentBatch::decoded(*text);
        if (!batch) {
            fail(batch.error() + " in: " + shown(*text));
            co_return;
        }
        std::map<std::string, const EnrichedEntry*> answers;
        for (const EnrichedEntry& entry : batch->entries) answers[entry.id] = &entry;
        for (const auto& item : items) {
            print(item.id + "  " + item.path + "\n");
            const auto answer = answers.find(item.id);
            if (answer == answers.end()) {
                fail("no entry with this id");
                continue;
            }
            const EnrichedEntry& entry = *answer->second;
            print("   name    " + shown(entry.friendlyName) + "\n   safety  " +
                  (entry.safety == DraftSafety::seguro ? "seguro" : "revisar") + "\n   reason  " +
                  shown(entry.reason) + "\n");
            if (entry.kind) print("   kind    " + shown(*entry.kind) + "\n");
        }
    }

    Task<void> tryMoves() {
        print("Places\n");
        const std::vector<PendingReviewItem> items = misplacedItems();
        const std::optional<std::string> text =
            co_await answerTo(std::string(CleanupReviewService::instructions()),
                              CleanupReviewService::prompt(items), &ReviewBatch::schema());
        if (!text) co_return;
        const auto batch = ReviewBatch::decoded(*text);
        if (!batch) {
            fail(batch.error() + " in: " + shown(*text));
            co_return;
        }
        for (const ReviewEntry& entry : batch->entries) {
            const char* action = entry.action == ReviewActionKind::promote  ? "promote"
                                 : entry.action == ReviewActionKind::demote ? "demote"
                                                                            : "reclassify";
            const bool isGroup = entry.targetGroupID && probeMetadataByID().contains(*entry.targetGroupID);
            const auto item = std::ranges::find(items, entry.id, &PendingReviewItem::id);
            print((item == items.end() ? "?" : item->path) + "\n   " + action + " " +
                  shown(entry.targetGroupID.value_or("-")) + (isGroup ? "" : " (no group: passed over)") +
                  "\n   reason  " + shown(entry.reason) + "\n");
        }
    }

    std::shared_ptr<LanguageModel> model_;
    TaskContext context_;
    int status_ = EXIT_SUCCESS;
};

/// The model to ask; none where the arguments are wrong.
std::shared_ptr<LanguageModel> modelFor(int argc, char** argv) {
    std::shared_ptr<LanguageModel> model = platformLanguageModel();
    setCurrentLanguage(Language::english);
    for (int at = 1; at < argc; ++at) {
        const std::string_view argument(argv[at]);
        if (argument == "--portuguese")
            setCurrentLanguage(Language::portuguese);
        else if (argument.starts_with("http://") && at + 1 == argc)
            model = std::make_shared<ModelServer>(argument);
        else
            return nullptr;
    }
    return model;
}

int run(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const std::shared_ptr<LanguageModel> model = modelFor(argc, argv);
    if (!model) {
        std::fputs(usage, stderr);
        return wrongArgument;
    }
    QtExecutor home;
    QtClock clock;
    TaskContext context;
    context.home = &home;
    context.clock = &clock;
    Trial trial(model, context);
    spawn(context, [&]() -> Task<void> {
        co_await trial.run();
        QCoreApplication::quit();
    });
    QCoreApplication::exec();
    return trial.status();
}

} // namespace
} // namespace vesko

int main(int argc, char** argv) { return vesko::run(argc, argv); }
