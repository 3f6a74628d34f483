#include "app/ModelPasses.h"

#include "base/Environment.h"
#include "concurrency/Concurrency.h"
#include "enrichment/AskModel.h"
#include "enrichment/CleanupEnrichmentService.h"
#include "enrichment/CleanupReviewService.h"
#include "orchestration/CleanupViewModel.h"
#include <utility>

namespace vesko {

/// The last answer to whether there is a model, and who waits for the next one.
struct ModelPasses::Presence : std::enable_shared_from_this<Presence> {
    Presence(std::shared_ptr<LanguageModel> given, TaskContext context)
        : languageModel(std::move(given)), tasks(std::move(context)) {}

    bool isAvailable() {
        if (isDevelopmentHost()) return false;
        // Whoever asks wants to begin now, and takes a late yes too.
        isWanted = isAsking && !wasAvailable;
        return wasAvailable;
    }
    void ask() {
        if (isAsking || isDevelopmentHost()) return;
        isAsking = true;
        question = spawn(tasks, [self = shared_from_this()]() -> Task<void> {
            const bool answer = co_await canAsk(self->languageModel);
            self->take(answer);
        });
    }
    void take(bool answer) {
        isAsking = false;
        wasAvailable = answer;
        const bool isLate = std::exchange(isWanted, false);
        const auto list = viewModel.lock();
        if (!isLate || !answer || !list) return;
        list->startEnrichment();
        list->startReview();
    }
    void notice(const CleanupPhase& phase) {
        if (std::exchange(lastPhase, phase.kind) == phase.kind || !phase.isBusy()) return;
        isWanted = false;
        if (phase.kind == CleanupPhase::Kind::scanning) ask();
    }

    const std::shared_ptr<LanguageModel> languageModel;
    const TaskContext tasks;
    std::weak_ptr<CleanupViewModel> viewModel;
    ChangeSource::Subscription changes;
    TaskHandle<void> question;
    CleanupPhase::Kind lastPhase = CleanupPhase::Kind::idle;
    bool wasAvailable = false;
    bool isAsking = false;
    bool isWanted = false; ///< a pass would have started, had the answer been there
};

ModelPasses::ModelPasses(std::shared_ptr<LanguageModel> model, TaskContext tasks)
    : presence_(std::make_shared<Presence>(std::move(model), std::move(tasks))) {}

ModelPasses::~ModelPasses() {
    presence_->question.cancel();
    presence_->changes = {};
    presence_->viewModel.reset();
}

void ModelPasses::joinTo(CleanupViewModelParts& parts) const {
    parts.enricher = std::make_shared<CleanupEnrichmentService>(CleanupEnrichmentService::Settings{},
                                                                presence_->languageModel, presence_->tasks);
    parts.reviewer =
        std::make_shared<CleanupReviewService>(CleanupReviewService::Settings{}, presence_->languageModel);
    parts.isEnrichmentAvailable = [presence = presence_] { return presence->isAvailable(); };
    parts.isReviewAvailable = parts.isEnrichmentAvailable;
}

void ModelPasses::follow(const std::shared_ptr<CleanupViewModel>& viewModel) {
    presence_->viewModel = viewModel;
    presence_->changes = viewModel->changes.subscribe([presence = std::weak_ptr(presence_)] {
        const auto self = presence.lock();
        const auto model = self ? self->viewModel.lock() : nullptr;
        if (model) self->notice(*model->phase);
    });
}

} // namespace vesko
