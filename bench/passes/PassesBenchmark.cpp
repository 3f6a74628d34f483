// Both passes of the language model with the window before them, asking a stand-in server: whether every
// answer reaches the screen, how long the main thread is ever kept from answering meanwhile, how many
// requests it takes, and whether memory stays flat. Works in a folder of its own below the temporary folder.
//
//   bench_passes [ITEMS] [OTHERS] [RUNS]      500 100000 1000 unless given
#include "app/ModelPasses.h"
#include "concurrency/Concurrency.h"
#include "core/GroupBuilders.h"
#include "core/ProbeCatalog.h"
#include "core/ScanProbe.h"
#include "platform/qt/ModelServer.h"
#include "platform/qt/QtClock.h"
#include "platform/qt/QtExecutor.h"
#include "support/StoredParts.h"
#include "support/Watchdog.h"
#include "support/WindowBench.h"
#include "ui/ScreenStage.h"
#include <QElapsedTimer>
#include <QProcess>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <unistd.h>

namespace {

using namespace vesko;
using namespace vesko::testing;

/// A stand-in for a model's server, in a process of its own.
class StandIn {
public:
    StandIn(int milliseconds, std::string log) : log_(std::move(log)) {
        process_.start("python3", {"-B", VESKO_STAND_IN, "--port", "0", "--delay",
                                   QString::number(milliseconds), "--log", QString::fromStdString(log_)});
        QElapsedTimer waited;
        waited.start();
        while (!process_.canReadLine() && waited.elapsed() < 20'000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        port_ = process_.readLine().split(' ').value(1).trimmed().toStdString();
        if (port_.empty()) {
            std::fprintf(stderr, "the stand-in server did not start: %s\n%s",
                         process_.errorString().toUtf8().constData(),
                         process_.readAllStandardError().constData());
            std::exit(1);
        }
    }
    ~StandIn() {
        process_.kill();
        process_.waitForFinished();
    }
    StandIn(const StandIn&) = delete;
    StandIn& operator=(const StandIn&) = delete;

    std::string address() const { return "http://127.0.0.1:" + port_; }
    int requests(const std::string& kind) const {
        std::ifstream log(log_);
        int count = 0;
        for (std::string line; std::getline(log, line);)
            if (line.contains(kind)) ++count;
        return count;
    }

private:
    QProcess process_;
    std::string log_;
    std::string port_;
};

class FoundProbe final : public ScanProbe {
public:
    explicit FoundProbe(CleanupGroup found)
        : metadata_(probeMetadataByID().at(found.id)), found_(std::move(found)) {}
    const GroupMetadata& metadata() const noexcept override { return metadata_; }
    ProbeResult run(const ProbeContext&) const override { return {found_, {}}; }

private:
    GroupMetadata metadata_;
    CleanupGroup found_;
};

CleanupGroup discoveries(int count) {
    std::vector<ScannableItem> items;
    for (int i = 0; i < count; ++i)
        items.push_back(
            item("/home/someone/Library/Caches/com.example.thing" + std::to_string(i), 200'000'000 - i));
    return group("discover.caches", std::move(items));
}

/// Everything else that the list of a developer's computer holds.
std::vector<CleanupGroup> others(int count) {
    std::vector<CleanupGroup> groups;
    for (const char* id : {"cache.npm", "xcode.derivedData", "downloads.stale", "trash"}) {
        std::vector<ScannableItem> items;
        for (int i = 0; i < count / 4; ++i)
            items.push_back(
                item(std::string("/home/someone/") + id + "/entry-" + std::to_string(i), 10'000'000 - i));
        if (count > 0) groups.push_back(group(id, std::move(items)));
    }
    return groups;
}

ScanEngine engineOver(const std::vector<CleanupGroup>& groups) {
    ScanEngine engine;
    for (const CleanupGroup& each : groups) engine.probes.push_back(std::make_shared<FoundProbe>(each));
    engine.maxConcurrency = 5;
    engine.demotedPaths.emplace();
    return engine;
}

/// The program's view model and window over scans that find these groups.
struct Program {
    Program(const std::string& address, std::vector<CleanupGroup> groups)
        : model(std::make_shared<ModelServer>(address)), found(std::move(groups)),
          stage(true, [this](CleanupViewModelParts& parts) { join(parts); }) {
        passes->follow(stage.model);
    }
    void join(CleanupViewModelParts& parts) {
        passes = std::make_unique<ModelPasses>(model, parts.tasks);
        passes->joinTo(parts);
        parts.scanEngineFactory = [this](ScanMode) { return engineOver(found); };
    }
    std::shared_ptr<LanguageModel> model;
    std::vector<CleanupGroup> found;
    std::unique_ptr<ModelPasses> passes;
    ScreenStage stage;
};

void measureWindow(const std::string& log, int items, int besides) {
    const StandIn server(50, log);
    std::vector<CleanupGroup> groups = others(besides);
    groups.insert(groups.begin(), discoveries(items));
    Program program(server.address(), std::move(groups));
    ScreenStage& stage = program.stage;
    stage.show();
    stage.shell.setSelection(QStringLiteral("cleanup"));
    stage.settle();
    stage.cleanup.startScan();
    runUntil([&] { return stage.model->isAIBusy(); });
    CleanupListModel& rows = *stage.cleanup.list();
    stage.settle();
    rows.setExpanded(rows.rowOfGroup("discover.caches"), true);
    stage.settle();
    Watchdog watchdog;
    stage.settle();
    watchdog.takeLongest();
    QElapsedTimer timer;
    timer.start();
    runUntil([&] { return !stage.model->isAIBusy(); });
    const auto took = static_cast<double>(timer.elapsed());
    stage.settle();
    const Watchdog::Stall stall = watchdog.takeLongest();
    int refined = 0;
    for (int row = 0; row < rows.rowCount(); ++row)
        if (rows.data(rows.index(row), CleanupListModel::TitleRole)
                .toString()
                .startsWith(QLatin1String("Refined ")))
            ++refined;
    std::printf("%d discovered items beside %d others, a server that takes 50 ms\n", items, besides);
    std::printf("  names on screen                    %8d (wanted: %d)\n", refined, items);
    std::printf("  longest stall of the main thread   %8.1f ms (wanted: at most 50)\n", stall.time);
    std::printf("  most work of it in one turn        %8.1f ms\n", stall.work);
    std::printf("  from the first question on         %8.0f ms\n", took);
    std::printf("  questions for names                %8d (wanted: %d)\n",
                server.requests("\"schema\": \"EnrichmentBatch\"}"), (items + 11) / 12);
    std::printf("  questions for places               %8d (wanted: at most 3)\n",
                server.requests("\"schema\": \"ReviewBatch\"}"));
    std::printf("  questions for the model            %8d\n", server.requests("\"GET\""));
    stage.life.end();
}

long residentKiB() {
    std::ifstream figures("/proc/self/statm");
    long total = 0;
    long resident = 0;
    figures >> total >> resident;
    return resident * (::sysconf(_SC_PAGESIZE) / 1024);
}

/// The services as the program wires them, below the window.
void measureMemory(const std::string& log, const TempTree& place, int runs) {
    const StandIn server(0, log);
    QtExecutor home;
    QtClock clock;
    WorkerPool workers;
    TaskRegistry registry;
    const TaskContext tasks{&home, &workers, &clock, {}, &registry};
    CleanupViewModelParts parts = storedParts(tasks, place.url("state"), "afm-2026-06-i18n");
    parts.scanEngineFactory = [found = std::vector{discoveries(24)}](ScanMode) { return engineOver(found); };
    ModelPasses passes(std::make_shared<ModelServer>(server.address()), tasks);
    passes.joinTo(parts);
    const auto model = std::make_shared<CleanupViewModel>(std::move(parts));
    passes.follow(model);
    std::printf("Runs of both passes, 24 items each\n");
    for (int run = 1; run <= runs; ++run) {
        model->enrichmentStore().clear();
        const auto scan = spawn(tasks, [&] { return model->startScan(ScanMode::full); });
        runUntil([&] { return scan.done() && !model->isAIBusy(); });
        if (run == runs / 10 || run == runs / 2 || run == runs)
            std::printf("  resident after %5d runs           %8ld KiB\n", run, residentKiB());
        std::fflush(stdout);
    }
    std::printf("  questions                          %8d\n", server.requests("\"POST\""));
    registry.cancelAll();
    runUntil([&] { return registry.empty(); });
}

} // namespace

int main(int argc, char** argv) {
    const WindowBench bench(argc, argv);
    const TempTree& place = bench.place;
    const int items = bench.number(1, 500);
    if (items > 0) {
        measureWindow(place.path("alone.log"), items, 0);
        if (const int others = bench.number(2, 100'000); others > 0)
            measureWindow(place.path("among.log"), items, others);
    }
    if (const int runs = bench.number(3, 1000); runs > 0)
        measureMemory(place.path("memory.log"), place, runs);
    return 0;
}
