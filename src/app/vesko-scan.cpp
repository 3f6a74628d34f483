// Runs a scan without a window and prints what it finds. It deletes nothing.
#include "app/ConsoleLoop.h"
#include "app/PreferredLanguage.h"
#include "app/ScanDeltaJson.h"
#include "app/ScanStatistics.h"
#include "app/ScanSummary.h"
#include "base/FileSystem.h"
#include "base/Paths.h"
#include "base/QuietReading.h"
#include "concurrency/Concurrency.h"
#include "core/BoundedSizeCalculator.h"
#include "core/ProbeCatalog.h"
#include "core/ScanEngine.h"
#include "core/SharedSizeCalculator.h"
#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vesko {
namespace {

constexpr std::string_view usage =
    R"(Usage: vesko-scan [--home DIR] [--summary] [--statistics]
Looks for what takes up room in a home folder and can be given back. Deletes nothing.

  --home DIR   look in DIR instead of your own home folder
  --summary    print a table instead of one JSON object a line
  --statistics
               after all else, print one more line of JSON: how many folders were opened, by measuring and
               by searching, and what else was asked of the system
  --help       print this text

Without --summary each line is one event of the scan: "probeStarted", "probeFinished", and at the end
"finalize" with the report.
)";

constexpr int wrongUse = 2;

enum class Output { jsonLines, summary };

struct Options {
    std::optional<FileURL> home;
    Output output = Output::jsonLines;
    bool statistics = false;
    bool help = false;
};

int complain(const std::string& message) {
    std::fprintf(stderr, "vesko-scan: %s\nTry 'vesko-scan --help'.\n", escapedForDisplay(message).c_str());
    return wrongUse;
}

/// The options, or what is wrong with them.
std::pair<Options, std::string> parsed(const std::vector<std::string>& arguments) {
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == "--help") {
            options.help = true;
        } else if (arguments[i] == "--summary") {
            options.output = Output::summary;
        } else if (arguments[i] == "--statistics") {
            options.statistics = true;
        } else if (arguments[i] == "--home") {
            if (++i == arguments.size()) return {options, "--home needs a folder"};
            std::error_code failure;
            const std::filesystem::path absolute = std::filesystem::absolute(arguments[i], failure);
            const FileURL home(standardizedPath(failure ? arguments[i] : absolute.string()));
            if (!directChildren(home, Hidden::include)) return {options, "can't list " + arguments[i]};
            options.home = home;
        } else {
            return {options, "unknown option " + arguments[i]};
        }
    }
    return {options, ""};
}

ScanEngine engineFor(const Options& options) {
    constexpr std::int64_t mostMeasurements = 10;
    ScanEngine engine;
    engine.probes = probeCatalog();
    engine.size = std::make_shared<const BoundedSizeCalculator>(
        std::make_shared<const SharedSizeCalculator>(),
        std::make_shared<SizingConcurrencyLimiter>(mostMeasurements));
    engine.demotedPaths.emplace();
    engine.home = options.home;
    return engine;
}

void print(const ScanDelta& delta, Output output) {
    if (output == Output::jsonLines) {
        std::printf("%s\n", jsonLine(delta).c_str());
        std::fflush(stdout);
    } else if (const auto* end = std::get_if<Finalize>(&delta)) {
        std::fputs(scanSummary(end->report).c_str(), stdout);
    }
}

Task<void> printScan(ScanEngine engine, Output output, ConsoleLoop& loop) {
    const TaskContext context = co_await currentContext();
    AsyncStream<ScanDelta> events = engine.scan(context);
    for (;;) {
        const std::optional<ScanDelta> delta = co_await events.next();
        if (!delta) break;
        print(*delta, output);
    }
    loop.stop();
}

int scanAndPrint(const Options& options) {
    ConsoleLoop loop;
    WorkerPool workers;
    TaskContext context;
    context.home = &loop;
    context.workers = &workers;
    const auto scan = spawn(context, [engine = engineFor(options), &options, &loop] {
        return printScan(engine, options.output, loop);
    });
    loop.run();
    if (options.statistics) std::printf("%s\n", statisticsLine().c_str());
    if (std::fflush(stdout) == 0 && !std::ferror(stdout)) return 0;
    std::perror("vesko-scan");
    return 1;
}

} // namespace
} // namespace vesko

int main(int count, char** words) {
    vesko::readQuietly();
    vesko::setCurrentLanguage(vesko::preferredLanguage());
    const auto [options, problem] =
        vesko::parsed(std::vector<std::string>(words + (count > 0 ? 1 : 0), words + count));
    if (!problem.empty()) return vesko::complain(problem);
    if (options.help) {
        std::fwrite(vesko::usage.data(), 1, vesko::usage.size(), stdout);
        return 0;
    }
    return vesko::scanAndPrint(options);
}
