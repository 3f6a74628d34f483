#include "Contender.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vesko::bench {

namespace {

double residentMiB(const rusage& usage) {
#ifdef __APPLE__
    return static_cast<double>(usage.ru_maxrss) / (1024.0 * 1024.0);
#else
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
#endif
}

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

} // namespace

Contender program(std::string name, std::vector<std::string> words) {
    return {std::move(name), [words = std::move(words)]() -> int {
                std::vector<char*> arguments;
                for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
                arguments.push_back(nullptr);
                const int nowhere = ::open("/dev/null", O_RDWR);
                ::dup2(nowhere, 0);
                ::dup2(nowhere, 1);
                ::dup2(nowhere, 2);
                ::execvp(arguments[0], arguments.data());
                return 127;
            }};
}

Run runOnce(const Contender& contender) {
    const auto begin = std::chrono::steady_clock::now();
    const pid_t child = ::fork();
    if (child == 0) ::_exit(contender.run());
    int status = 0;
    rusage usage{};
    ::wait4(child, &status, 0, &usage);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    return {taken.count(), seconds(usage.ru_utime) + seconds(usage.ru_stime), residentMiB(usage),
            WIFEXITED(status) && WEXITSTATUS(status) == 0};
}

std::vector<std::vector<Run>> runInTurn(const std::vector<Contender>& contenders, unsigned rounds) {
    std::vector<std::vector<Run>> runs(contenders.size());
    for (unsigned round = 0; round < rounds; ++round)
        for (std::size_t i = 0; i < contenders.size(); ++i) runs[i].push_back(runOnce(contenders[i]));
    return runs;
}

bool printRuns(const std::vector<Contender>& contenders, const std::vector<std::vector<Run>>& runs) {
    std::printf("%-18s %10s %10s %10s %10s\n", "", "best s", "median s", "cpu s", "peak MiB");
    bool allRan = true;
    for (std::size_t i = 0; i < contenders.size(); ++i) {
        std::printf("%-18s %10.4f %10.4f %10.4f %10.1f\n", contenders[i].name.c_str(), bestSeconds(runs[i]),
                    medianSeconds(runs[i]), bestCpuSeconds(runs[i]), peakMiB(runs[i]));
        allRan = allRan && std::ranges::all_of(runs[i], &Run::succeeded);
    }
    if (!allRan) std::puts("a contender failed");
    return allRan;
}

double bestSeconds(const std::vector<Run>& runs) { return std::ranges::min(runs, {}, &Run::seconds).seconds; }

double bestCpuSeconds(const std::vector<Run>& runs) {
    return std::ranges::min(runs, {}, &Run::cpuSeconds).cpuSeconds;
}

double medianSeconds(const std::vector<Run>& runs) {
    std::vector<double> all;
    for (const Run& run : runs) all.push_back(run.seconds);
    std::ranges::nth_element(all, all.begin() + static_cast<std::ptrdiff_t>(all.size() / 2));
    return all[all.size() / 2];
}

double peakMiB(const std::vector<Run>& runs) { return std::ranges::max(runs, {}, &Run::peakMiB).peakMiB; }

} // namespace vesko::bench
