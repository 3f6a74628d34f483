// bench_search [FOLDER [ENTRIES [ROUNDS]]]
// Makes a home of 80 projects in FOLDER (by default below the temporary folder, the one that bench_scan uses;
// kept for the next run) and lets vesko-mdfind and find look for its dependency folders, in turn and with a
// warm cache. Fails when vesko-mdfind misses its goals or finds anything else.
#include "base/ChildProcess.h"
#include "scan/SampleHome.h"
#include "walk/Contender.h"
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

using namespace vesko;
using namespace vesko::bench;

namespace {

constexpr double goalToFind = 0.5;
constexpr double goalMiB = 32;

std::vector<std::string> sortedLines(const std::vector<std::string>& words) {
    const auto child = runChild(words[0], {words.begin() + 1, words.end()});
    if (!child || child->status != 0) return {};
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < child->standardOutput.size();) {
        const std::size_t end = child->standardOutput.find('\n', at);
        lines.push_back(child->standardOutput.substr(at, end - at));
        at = end == std::string::npos ? child->standardOutput.size() : end + 1;
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

} // namespace

int main(int count, char** words) {
    const std::string folder =
        count > 1 ? words[1] : (std::filesystem::temp_directory_path() / "vesko-bench-scan").string();
    const std::size_t entries = count > 2 ? std::strtoull(words[2], nullptr, 10) : 600'000;
    const unsigned rounds = count > 3 ? static_cast<unsigned>(std::strtoul(words[3], nullptr, 10)) : 15;
    const std::string home = sampleHome(folder, entries);

    const std::vector<std::string> ours{
        VESKO_MDFIND, "-onlyin", home,
        "kMDItemFSName == 'node_modules' && kMDItemContentType == 'public.folder'"};
    const std::vector<std::string> find{"/usr/bin/find", home, "-name",  "node_modules",
                                        "-type",         "d",  "-prune", "-print"};
    const std::vector<std::string> found = sortedLines(ours);
    const bool agrees = !found.empty() && found == sortedLines(find);
    std::printf("%zu folders found%s\n", found.size(), agrees ? "" : ", and find finds others");

    const std::vector<Contender> contenders{program("vesko-mdfind", ours), program("find", find)};
    const auto runs = runInTurn(contenders, rounds);
    const bool allRan = printRuns(contenders, runs);
    const double toFind = bestSeconds(runs[0]) / bestSeconds(runs[1]);
    std::printf("vesko-mdfind / find %.3f (goal %.1f), by the medians %.3f, in processor time %.3f\n", toFind,
                goalToFind, medianSeconds(runs[0]) / medianSeconds(runs[1]),
                bestCpuSeconds(runs[0]) / bestCpuSeconds(runs[1]));
    std::printf("peak memory         %.1f MiB (goal %.0f)\n", peakMiB(runs[0]), goalMiB);
    return agrees && allRan && toFind <= goalToFind && peakMiB(runs[0]) <= goalMiB ? 0 : 1;
}
