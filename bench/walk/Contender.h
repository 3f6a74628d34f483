#pragma once
#include <functional>
#include <string>
#include <vector>

namespace vesko::bench {

/// One way to do the work, run in a process of its own so that its peak memory can be told.
struct Contender {
    std::string name;
    std::function<int()> run; ///< its result is the process's exit status
};

/// A contender that is a program; its output goes nowhere.
Contender program(std::string name, std::vector<std::string> words);

struct Run {
    double seconds = 0;
    double cpuSeconds = 0; ///< of all its threads, in the program and in the system
    double peakMiB = 0;    ///< resident
    bool succeeded = false;
};

Run runOnce(const Contender& contender);

/// Runs all of them `rounds` times in turn, so that a busy machine is busy for each, and gives each one's
/// runs.
std::vector<std::vector<Run>> runInTurn(const std::vector<Contender>& contenders, unsigned rounds);

/// Prints a line for each contender, and gives whether every run of each one succeeded; says so where not.
bool printRuns(const std::vector<Contender>& contenders, const std::vector<std::vector<Run>>& runs);

double bestSeconds(const std::vector<Run>& runs);
double medianSeconds(const std::vector<Run>& runs);
double bestCpuSeconds(const std::vector<Run>& runs);
double peakMiB(const std::vector<Run>& runs);

} // namespace vesko::bench
