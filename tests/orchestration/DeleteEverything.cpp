// delete_everything FOLDER [DEMOTED]
// Starts from the state files in FOLDER/state as the program does, deletes all that is then selected, and
// ends. With DEMOTED, that text becomes the file of demoted paths after the start has taken the old one away.
// Prints a line when the deletion begins and one when all is done.
#include "base/StateFile.h"
#include "concurrency/Concurrency.h"
#include "orchestration/CleanupViewModel.h"
#include "support/ManualLoop.h"
#include "support/StoredParts.h"
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
    const CleanupViewModelParts parts = testing::storedParts(context, state, "model-1");
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
