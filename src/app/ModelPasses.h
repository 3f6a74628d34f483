#pragma once
#include "concurrency/TaskContext.h"
#include "enrichment/LanguageModel.h"
#include <memory>

namespace vesko {

class CleanupViewModel;
struct CleanupViewModelParts;

/// The passes of the language model, as the program puts them together, and whether they can be had.
///
/// Whether there is a model is asked at the beginning of each scan and remembered, since asking a server
/// takes a moment and nobody waits for it here. A model that comes or goes is thus noticed by the next scan.
/// Where a scan ends before the answer is there, its passes start when the answer is yes, unless another scan
/// or a deletion has begun by then. Main thread.
class ModelPasses {
public:
    ModelPasses(std::shared_ptr<LanguageModel> model, TaskContext tasks);
    ~ModelPasses();
    ModelPasses(const ModelPasses&) = delete;
    ModelPasses& operator=(const ModelPasses&) = delete;

    /// Gives a view model that is about to be made its two passes.
    void joinTo(CleanupViewModelParts& parts) const;
    /// Asks at the beginning of each scan of the view model that was made of these parts. Does not keep it
    /// alive.
    void follow(const std::shared_ptr<CleanupViewModel>& viewModel);

private:
    struct Presence;
    std::shared_ptr<Presence> presence_;
};

} // namespace vesko
