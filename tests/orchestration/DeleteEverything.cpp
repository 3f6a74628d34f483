// delete_everything FOLDER [DEMOTED]
// Starts from the state files in FOLDER/state as the program does, deletes all that is then selected, and
// ends. With DEMOTED, that text becomes the file of demoted paths after the start has taken the old one away.
// Prints a line when the deletion begins and one when all is done.
#include "background/SilentNotificationService.h"
#include "base/StateFile.h"
#include "concurrency/Concurrency.h"
#include "enrichment/UnavailableEnrichment.h"
#include "enrichment/UnavailableReview.h"
#include "orchestration/CleanupViewModel.h"
#include "support/ManualLoop.h"
#include "support/MemoryUserDefaults.h"
#include <cstdio>
#include <memory>
#include <string>

int main(int count, char** words) {
    using namespace vesko;
    if (count < 2) return 2;
    const FileURL state = FileURL(words[1]).appending("state");
    ManualLoop loop;
    WorkerPool workers;
    TaskRegistry registry;
    const TaskContext context{&loop, &workers, &loop, {}, &registry};
    CleanupViewModelParts parts;
    parts.tasks = context;
    parts.scanCacheStore = std::make_shared<ScanCacheStore>(state.appending("scan-cache.json"));
    parts.enrichmentStore =
        std::make_shared<EnrichmentStore>(state.appending("enrichment-cache.json"), "model-1", parts.tasks);
    parts.demotedPathsStore = std::make_shared<DemotedPathsStore>(state.appending("demoted-paths.json"));
    parts.notificationService = std::make_shared<SilentNotificationService>();
    parts.defaults = std::make_shared<testing::MemoryUserDefaults>();
    parts.enricher = std::make_shared<UnavailableEnrichment>();
    parts.reviewer = std::make_shared<UnavailableReview>();
    const auto model = std::make_shared<CleanupViewModel>(parts);
    if (count > 2) writeStateFile(parts.demotedPathsStore->fileURL(), words[2]);
    std::puts("begins");
    std::fflush(stdout);
    const TaskHandle<void> deletion = spawn(context, [model] { return model->deleteSelected(); });
    const bool hasEnded =
        loop.waitFor([&] { return deletion.done() && registry.empty(); }, std::chrono::minutes(2));
    std::puts(hasEnded ? "done" : "hangs");
    return hasEnded ? 0 : 1;
}
