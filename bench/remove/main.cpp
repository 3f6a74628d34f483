// bench_remove [FOLDER [ENTRIES [ROUNDS]]]
// Makes folders of ENTRIES (by default 1,000,000) empty files in FOLDER and removes them, by our removal and
// by `rm -rf`, in turn. Fails when ours misses its goals: 1.5 times rm, 64 MiB more than a process that does
// nothing. Says how long it told of no progress at most; five times a second is the goal for that.
#include "Contender.h"
#include "execution/Remover.h"
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <unistd.h>

using namespace vesko;
using namespace vesko::bench;

namespace {

constexpr double goalToRm = 1.5;
constexpr double goalMiB = 64;

void fill(const std::string& folder, std::size_t entries) {
    std::filesystem::create_directories(folder);
    const int handle = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (std::size_t i = 0; i < entries; ++i) {
        const std::string name =
            "some-object-file-" + std::to_string(i * 2'654'435'761U % 4'294'967'296U) + ".o";
        const int file = ::openat(handle, name.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
        if (file < 0) std::exit(2);
        ::close(file);
    }
    ::close(handle);
    ::sync();
}

/// Says how long it was quiet at most: on a busy disk a single removal may take longer than the 200 ms within
/// which progress is told.
int removeOurs(const std::string& folder) {
    auto last = std::chrono::steady_clock::now();
    std::chrono::duration<double, std::milli> longest{};
    const auto failure = removeForGood(FileURL(folder), [&](std::int64_t, std::int64_t) {
        const auto now = std::chrono::steady_clock::now();
        longest = std::max<std::chrono::duration<double, std::milli>>(longest, now - last);
        last = now;
    });
    std::printf("longest time without a word: %.0f ms\n", longest.count());
    std::fflush(stdout);
    return failure ? 1 : 0;
}

} // namespace

int main(int count, char** words) {
    const std::string folder =
        count > 1 ? words[1] : (std::filesystem::temp_directory_path() / "vesko-bench-remove").string();
    const std::size_t entries = count > 2 ? std::strtoull(words[2], nullptr, 10) : 1'000'000;
    const unsigned rounds = count > 3 ? static_cast<unsigned>(std::strtoul(words[3], nullptr, 10)) : 2;
    const std::string victim = folder + "/victim";

    const std::vector<Contender> contenders{{"ours", [&] { return removeOurs(victim); }},
                                            program("rm -rf", {"rm", "-rf", victim})};
    const double idle = runOnce({"idle", [] { return 0; }}).peakMiB;
    std::vector<std::vector<Run>> runs(contenders.size());
    for (unsigned round = 0; round < rounds; ++round)
        for (std::size_t i = 0; i < contenders.size(); ++i) {
            fill(victim, entries);
            runs[i].push_back(runOnce(contenders[i]));
        }
    const bool allRan = printRuns(contenders, runs);
    const double ratio = bestSeconds(runs[0]) / bestSeconds(runs[1]);
    const double memory = peakMiB(runs[0]) - idle;
    std::printf("ours / rm   %.3f (goal %.2f), by CPU %.3f\n", ratio, goalToRm,
                bestCpuSeconds(runs[0]) / bestCpuSeconds(runs[1]));
    std::printf("more memory %.1f MiB (goal %.0f)\n", memory, goalMiB);
    return allRan && ratio <= goalToRm && memory <= goalMiB ? 0 : 1;
}
