// bench_walk [FOLDER [ENTRIES [ROUNDS]]]
// Makes a tree in FOLDER (by default below the temporary folder; kept for the next run) and measures it by
// our walk, by the floor with as many threads, by du, and by ncdu and gdu where they are. All run in turn
// with a warm cache. Fails when our walk misses its goals.
#include "Contender.h"
#include "SampleTree.h"
#include "WalkFloor.h"
#include "walk/BareWalk.h"
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

using namespace vesko;
using namespace vesko::bench;

namespace {

constexpr unsigned threads = 2;
constexpr double goalToFloor = 1.15;
constexpr double goalToDu = 0.5;
constexpr double goalMiB = 32;

int walkOurs(const std::string& root, unsigned threadCount) {
    return walkBare(FileURL(root), threadCount).value_or(0) > 0 ? 0 : 1;
}

bool isInstalled(const std::string& name) {
    return std::system(("command -v " + name + " >/dev/null 2>&1").c_str()) == 0;
}

} // namespace

int main(int count, char** words) {
    const std::string folder =
        count > 1 ? words[1] : (std::filesystem::temp_directory_path() / "vesko-bench-walk").string();
    const std::size_t entries = count > 2 ? std::strtoull(words[2], nullptr, 10) : 600'000;
    const unsigned rounds = count > 3 ? static_cast<unsigned>(std::strtoul(words[3], nullptr, 10)) : 5;
    const std::string root = sampleTree(folder, entries);

    std::vector<Contender> contenders{
        {"ours, 2 threads", [&] { return walkOurs(root, threads); }},
        {"floor, 2 threads", [&] { return walkFloor(root, threads) > 0 ? 0 : 1; }},
        program("du -sk", {"du", "-sk", root}),
        {"ours, 1 thread", [&] { return walkOurs(root, 1); }},
        {"floor, 1 thread", [&] { return walkFloor(root, 1) > 0 ? 0 : 1; }},
    };
    if (isInstalled("ncdu")) contenders.push_back(program("ncdu", {"ncdu", "-0", "-o", "/dev/null", root}));
    if (isInstalled("gdu")) contenders.push_back(program("gdu", {"gdu", "--non-interactive", root}));

    runOnce(contenders[2]); // fills the cache
    const auto runs = runInTurn(contenders, rounds);
    const bool allRan = printRuns(contenders, runs);
    const double toFloor = bestSeconds(runs[0]) / bestSeconds(runs[1]);
    const double toFloorSingle = bestSeconds(runs[3]) / bestSeconds(runs[4]);
    const double toDu = bestSeconds(runs[0]) / bestSeconds(runs[2]);
    const double memory = peakMiB(runs[0]);
    std::printf("ours / floor (2 threads) %.3f (goal %.2f), 1 thread %.3f\n", toFloor, goalToFloor,
                toFloorSingle);
    std::printf("ours / du                %.3f (goal %.2f)\n", toDu, goalToDu);
    std::printf("peak memory              %.1f MiB (goal %.0f)\n", memory, goalMiB);
    return allRan && toFloor <= goalToFloor && toDu <= goalToDu && memory <= goalMiB ? 0 : 1;
}
