// bench_watch [FOLDER [FOLDERS [WATCHES]]]
// Makes a tree of 50,000 folders in FOLDER (by default below the temporary folder; kept for the next run) and
// watches it: once with as many watches as it takes, once with WATCHES (8,192 unless told otherwise, what
// small machines allow), where the rest is polled. Tells what the start costs, and how soon a change in the
// deepest folder is told. Fails when a change is not told, or when the start holds its caller up.
#include "InotifyEventStream.h"
#include "InotifyQueue.h"
#include "walk/Contender.h"
#include "walk/SampleTree.h"
#include <algorithm>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <limits>
#include <mutex>
#include <string>
#include <thread>
#include <unistd.h>

using namespace vesko;
using namespace vesko::bench;

namespace {

using Clock = std::chrono::steady_clock;

constexpr double latency = 3;
constexpr double goalCallMilliseconds = 50;
constexpr double goalPolledSeconds = 60;

double secondsSince(Clock::time_point begin) {
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

double processorSeconds() {
    timespec used{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) / 1e9;
}

double residentMiB() {
    std::ifstream file("/proc/self/statm");
    double all = 0;
    double resident = 0;
    file >> all >> resident;
    return resident * static_cast<double>(::sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

struct Tree {
    std::string root;
    std::string deepest;
    std::size_t folders = 1;
    std::size_t entries = 0;
};

Tree lookedAt(const std::string& root) {
    Tree tree{root, root};
    int depth = -1;
    for (auto entry = std::filesystem::recursive_directory_iterator(root);
         entry != std::filesystem::recursive_directory_iterator(); ++entry) {
        ++tree.entries;
        if (entry->is_symlink() || !entry->is_directory()) continue;
        ++tree.folders;
        if (entry.depth() <= depth) continue;
        depth = entry.depth();
        tree.deepest = entry->path().string();
    }
    return tree;
}

/// Waits until one path is told.
class Ear {
public:
    FileEvents receiver() {
        return [this](const std::vector<std::string>& paths) {
            const std::lock_guard lock(mutex_);
            isHeard_ = isHeard_ || std::ranges::find(paths, wanted_) != paths.end();
            told_.notify_all();
        };
    }
    void listenFor(const std::string& path) {
        const std::lock_guard lock(mutex_);
        wanted_ = path;
        isHeard_ = false;
    }
    bool waits(double seconds) {
        std::unique_lock lock(mutex_);
        return told_.wait_for(lock, std::chrono::duration<double>(seconds), [this] { return isHeard_; });
    }

private:
    std::mutex mutex_;
    std::condition_variable told_;
    std::string wanted_;
    bool isHeard_ = false;
};

/// Seconds until a new file in the folder is told; negative when it is not.
double secondsUntilTold(Ear& ear, const std::string& folder) {
    const std::string file = folder + "/vesko-bench-watch";
    ear.listenFor(folder);
    const auto begin = Clock::now();
    std::ofstream(file) << "x";
    const bool isTold = ear.waits(2 * goalPolledSeconds);
    const double taken = secondsSince(begin);
    std::filesystem::remove(file);
    return isTold ? taken : -1;
}

bool watch(const Tree& tree, std::size_t mostWatches) {
    Ear ear;
    const double residentBefore = residentMiB();
    const double usedBefore = processorSeconds();
    const auto begin = Clock::now();
    auto stream =
        InotifyEventStream::make({tree.root}, latency, ear.receiver(), {.mostWatches = mostWatches});
    if (!stream) return false;
    const double callMilliseconds = secondsSince(begin) * 1000;
    while (!stream->figures().isSettled) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    const double settled = secondsSince(begin);
    const double used = processorSeconds() - usedBefore;
    const double resident = residentMiB() - residentBefore;
    const auto figures = stream->figures();
    std::printf("  the call                  %9.2f ms (goal %.0f)\n", callMilliseconds, goalCallMilliseconds);
    std::printf("  all folders looked at     %9.3f s, %.3f s of processor\n", settled, used);
    std::printf("  folders known, watched    %9zu, %zu\n", figures.folders, figures.watched);
    std::printf("  memory                    %9.2f MiB, %.0f bytes a folder\n", resident,
                resident * 1024 * 1024 / static_cast<double>(figures.folders));
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    const double usedBeforeChange = processorSeconds();
    const double told = secondsUntilTold(ear, tree.deepest);
    std::printf("  deepest change told after %9.4f s, %.3f s of processor meanwhile\n", told,
                processorSeconds() - usedBeforeChange);
    const auto end = Clock::now();
    stream.reset();
    std::printf("  its end                   %9.2f ms\n", secondsSince(end) * 1000);
    return callMilliseconds <= goalCallMilliseconds && figures.folders >= tree.folders && told >= 0 &&
           told <= goalPolledSeconds;
}

bool inItsOwnProcess(const std::string& title, const Tree& tree, std::size_t mostWatches) {
    std::printf("%s\n", title.c_str());
    std::fflush(stdout);
    const Run run = runOnce({title, [&] {
                                 const bool isWell = watch(tree, mostWatches);
                                 std::fflush(stdout);
                                 return isWell ? 0 : 1;
                             }});
    if (!run.succeeded) std::puts("  FAILED");
    return run.succeeded;
}

} // namespace

int main(int count, char** words) {
    const std::string folder =
        count > 1 ? words[1] : (std::filesystem::temp_directory_path() / "vesko-bench-watch").string();
    const std::size_t folders = count > 2 ? std::strtoull(words[2], nullptr, 10) : 50'000;
    const std::size_t few = count > 3 ? std::strtoull(words[3], nullptr, 10) : 8'192;
    constexpr std::size_t entriesOfAFolder = 16; // a little more than there are, so that it is never fewer
    const Tree tree = lookedAt(sampleTree(folder, folders * entriesOfAFolder));
    std::printf("%zu folders, %zu entries, the deepest %td levels below; fair share of this system %zu\n",
                tree.folders, tree.entries, std::ranges::count(tree.deepest.substr(tree.root.size()), '/'),
                fairShareOfWatches());
    const bool all =
        inItsOwnProcess("as many watches as it takes", tree, std::numeric_limits<std::size_t>::max());
    const bool fewOnes = inItsOwnProcess("at most " + std::to_string(few) + " watches", tree, few);
    return all && fewOnes ? 0 : 1;
}
