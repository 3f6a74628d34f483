// bench_scan [FOLDER [ENTRIES [ROUNDS]]]
// Makes a home in FOLDER (by default below the temporary folder; kept for the next run), scans it with
// vesko-scan and walks it bare with two threads, in turn and with a warm cache, and counts how often its
// folders are read. Fails when the scan misses its goals.
#include "base/ChildProcess.h"
#include "core/MeasuredTrees.h"
#include "platform/posix/TreeWalker.h"
#include "scan/SampleHome.h"
#include "walk/BareWalk.h"
#include "walk/Contender.h"
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

using namespace vesko;
using namespace vesko::bench;

namespace {

constexpr unsigned threads = 2;
constexpr double goalToWalk = 2.0;
constexpr double goalReadings = 1.1;
constexpr double goalMiB = 96;
constexpr double goalRecordMiB = 32;

class Count final : public TreeVisitor {
public:
    Next visit(const TreeEntry& entry, unsigned) override {
        if (entry.status.kind == EntryKind::folder) ++folders;
        ++entries;
        return Next::enter;
    }
    std::atomic<long> folders{0};
    std::atomic<long> entries{0};
};

/// The whole home in one reading that keeps every folder's sum.
int walkRecording(const std::string& root) {
    MeasuredTrees trees;
    return trees.bytes(FileURL(root), false).value_or(0) > 0 ? 0 : 1;
}

nlohmann::json statisticsOf(const std::string& home) {
    const auto scan = runChild(VESKO_SCAN, {"--statistics", "--home", home});
    if (!scan || scan->status != 0) return {};
    const std::string& output = scan->standardOutput;
    return nlohmann::json::parse(output.substr(output.rfind('\n', output.size() - 2) + 1));
}

} // namespace

int main(int count, char** words) {
    const std::string folder =
        count > 1 ? words[1] : (std::filesystem::temp_directory_path() / "vesko-bench-scan").string();
    const std::size_t entries = count > 2 ? std::strtoull(words[2], nullptr, 10) : 600'000;
    const unsigned rounds = count > 3 ? static_cast<unsigned>(std::strtoul(words[3], nullptr, 10)) : 5;
    const std::string home = sampleHome(folder, entries);

    Count all;
    if (walkTree(FileURL(home), all) != WalkOutcome::finished) return 1;
    const nlohmann::json statistics = statisticsOf(home);
    if (statistics.is_null()) return 1;
    std::printf("%ld entries, %ld folders\n%s\n", all.entries.load(), all.folders.load(),
                statistics.dump().c_str());

    const std::vector<Contender> contenders{
        {"walk, 2 threads", [&] { return walkBare(FileURL(home), threads).value_or(0) > 0 ? 0 : 1; }},
        program("scan", {VESKO_SCAN, "--home", home}),
        {"recording walk", [&] { return walkRecording(home); }},
    };
    const auto runs = runInTurn(contenders, rounds);
    const bool allRan = printRuns(contenders, runs);
    const auto folders = static_cast<double>(all.folders.load());
    const double toWalk = bestSeconds(runs[1]) / bestSeconds(runs[0]);
    const double searched = statistics["searching"]["foldersOpened"].get<double>() / folders;
    const double measured = statistics["measuring"]["foldersRead"].get<double>() / folders;
    std::printf("scan / bare walk                       %.3f (goal %.1f)\n", toWalk, goalToWalk);
    std::printf("the same in processor time             %.3f\n",
                bestCpuSeconds(runs[1]) / bestCpuSeconds(runs[0]));
    std::printf("opened by searching / folders there    %.3f (goal %.1f)\n", searched, goalReadings);
    std::printf("read by measuring / folders there      %.3f (goal %.1f)\n", measured, goalReadings);
    std::printf("peak memory                            %.1f MiB (goal %.0f)\n", peakMiB(runs[1]), goalMiB);
    std::printf("recording walk / bare walk             %.3f, %.1f MiB (goal %.0f)\n",
                bestSeconds(runs[2]) / bestSeconds(runs[0]), peakMiB(runs[2]), goalRecordMiB);
    const bool isWithinGoals = toWalk <= goalToWalk && searched <= goalReadings && measured <= goalReadings &&
                               peakMiB(runs[1]) <= goalMiB && peakMiB(runs[2]) <= goalRecordMiB;
    return allRan && isWithinGoals ? 0 : 1;
}
