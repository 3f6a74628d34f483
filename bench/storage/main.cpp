// bench_storage [FOLDER [ENTRIES [ROUNDS]]]
// Makes a home in FOLDER (by default below the temporary folder; kept for the next run), all of it in folders
// of the dashboard, measures it as the dashboard does the first time and walks it bare with two threads, in
// turn and with a warm cache. Fails when the measurement misses its goal.
#include "app/ConsoleLoop.h"
#include "concurrency/Concurrency.h"
#include "core/DirectoryStoragePathSizer.h"
#include "core/MeasuringRuns.h"
#include "core/SharedStoragePathSizer.h"
#include "platform/posix/TreeWalker.h"
#include "storage/StorageHome.h"
#include "storage/StorageInventoryService.h"
#include "walk/BareWalk.h"
#include "walk/Contender.h"
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

using namespace vesko;
using namespace vesko::bench;

namespace {

constexpr unsigned threads = 2;
constexpr double goalToWalk = 1.3;

class Count final : public TreeVisitor {
public:
    Next visit(const TreeEntry& entry, unsigned) override {
        ++entries;
        if (entry.status.kind == EntryKind::folder) ++folders;
        return Next::enter;
    }
    std::atomic<long> folders{0};
    std::atomic<long> entries{0};
};

Task<void> readAll(AsyncStream<StorageInventoryUpdate> stream, bool& hasFinished, ConsoleLoop& loop) {
    for (;;) {
        const std::optional<StorageInventoryUpdate> update = co_await stream.next();
        if (!update) break;
        if (const auto* end = std::get_if<InventoryFinished>(&*update))
            hasFinished = end->buckets.size() == 5;
    }
    loop.stop();
}

/// All buckets, as the dashboard measures them the first time.
int measureBuckets(const std::string& home, const std::shared_ptr<const StoragePathSizing>& sizer) {
    ConsoleLoop loop;
    WorkerPool workers;
    TaskContext context;
    context.home = &loop;
    context.workers = &workers;
    bool hasFinished = false;
    spawn(context, [&] {
        return readAll(StorageInventoryService::measureStream(context, FileURL(home), sizer, 0), hasFinished,
                       loop);
    });
    loop.run();
    return hasFinished ? 0 : 1;
}

} // namespace

int main(int count, char** words) {
    const std::string folder =
        count > 1 ? words[1] : (std::filesystem::temp_directory_path() / "vesko-bench-storage").string();
    const std::size_t entries = count > 2 ? std::strtoull(words[2], nullptr, 10) : 600'000;
    const unsigned rounds = count > 3 ? static_cast<unsigned>(std::strtoul(words[3], nullptr, 10)) : 7;
    const std::string home = storageHome(folder, entries);

    Count all;
    if (walkTree(FileURL(home), all) != WalkOutcome::finished) return 1;
    std::printf("%ld entries, %ld folders\n", all.entries.load(), all.folders.load());
    const std::vector<Contender> contenders{
        {"walk, 2 threads", [&] { return walkBare(FileURL(home), threads).value_or(0) > 0 ? 0 : 1; }},
        {"first measurement",
         [&] {
             const auto runs = std::make_shared<const MeasuringRuns>();
             return measureBuckets(home, std::make_shared<const SharedStoragePathSizer>(runs));
         }},
        {"sharing nothing",
         [&] { return measureBuckets(home, std::make_shared<const DirectoryStoragePathSizer>()); }},
    };
    const auto runs = runInTurn(contenders, rounds);
    const bool allRan = printRuns(contenders, runs);
    const double best = bestSeconds(runs[1]) / bestSeconds(runs[0]);
    std::printf("first measurement / bare walk          %.3f best, %.3f median (goal %.1f)\n", best,
                medianSeconds(runs[1]) / medianSeconds(runs[0]), goalToWalk);
    std::printf("the same in processor time             %.3f\n",
                bestCpuSeconds(runs[1]) / bestCpuSeconds(runs[0]));
    return allRan && best <= goalToWalk ? 0 : 1;
}
