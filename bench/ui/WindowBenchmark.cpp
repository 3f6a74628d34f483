// The window under load, shown without a display: how long its thread is ever kept from answering while a
// scan of a large home streams in and while many files are deleted, and how long the person waits for what
// they ask of a list of 100,000 items. Works in a folder of its own below the temporary folder.
//
//   bench_ui [ENTRIES] [FILES] [ITEMS]      600000 100000 100000 unless given
#include "support/Watchdog.h"
#include "support/WindowBench.h"
#include "ui/ScreenStage.h"
#include <QElapsedTimer>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <unistd.h>

namespace {

using namespace vesko;
using namespace vesko::testing;

void makeFiles(const std::string& folder, int count) {
    std::filesystem::create_directories(folder);
    const int at = ::open(folder.c_str(), O_DIRECTORY | O_RDONLY);
    for (int i = 0; i < count; ++i) {
        const int file = ::openat(at, ("file-" + std::to_string(i)).c_str(), O_CREAT | O_WRONLY, 0600);
        if (file < 0 || ::write(file, "x", 1) != 1) std::exit(1);
        ::close(file);
    }
    ::close(at);
}

/// From the call to the frame that shows its effect.
template <class Action> double milliseconds(ScreenStage& stage, Action action) {
    bool framed = false;
    const auto connection = QObject::connect(stage.window.window(), &QQuickWindow::frameSwapped, &stage.shell,
                                             [&framed] { framed = true; });
    QElapsedTimer timer;
    timer.start();
    action();
    stage.cleanup.refresh();
    framed = false;
    stage.window.window()->update();
    runUntil([&] { return framed; });
    QObject::disconnect(connection);
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

void report(const char* what, double value, int limit) {
    std::printf("%-58s %8.1f ms (wanted: at most %d)\n", what, value, limit);
    std::fflush(stdout);
}

void report(const char* what, const Watchdog::Stall& stall) {
    report(what, stall.time, 50);
    std::printf("  %-56s %8.1f ms\n", "most work of its thread in one turn", stall.work);
}

void showCleanup(ScreenStage& stage) {
    stage.show();
    stage.shell.setSelection(QStringLiteral("cleanup"));
    stage.settle();
}

void scan(const std::string& home, int entries) {
    // A home as a developer's: many projects' builds, caches of many small files, old logs.
    for (int i = 0; i < 40; ++i) {
        makeFiles(home + "/Library/Developer/Xcode/DerivedData/Build-" + std::to_string(i), entries / 80);
    }
    for (const char* cache : {".npm/_cacache", ".gradle/caches", ".cache/uv", "go/pkg/mod"}) {
        makeFiles(home + "/" + cache, entries / 16);
    }
    makeFiles(home + "/.Trash", entries / 4);
    ScreenStage stage;
    showCleanup(stage);
    Watchdog watchdog;
    stage.settle();
    watchdog.takeLongest();
    stage.cleanup.startScan();
    runUntil([&] { return stage.model->phase->kind == CleanupPhase::Kind::scanning; });
    runUntil([&] { return stage.model->phase->kind == CleanupPhase::Kind::idle; });
    stage.settle();
    report("longest stall while a scan runs", watchdog.takeLongest());
    std::int64_t items = 0;
    for (const CleanupGroup& each : *stage.model->groups)
        items += static_cast<std::int64_t>(each.items.size());
    std::printf("  %d entries, %lld items in %zu groups\n", entries, static_cast<long long>(items),
                stage.model->groups->size());
    stage.life.end();
}

void erase(const std::string& folder, const char* what, int files, bool asOne) {
    makeFiles(folder, files);
    std::vector<ScannableItem> items;
    if (asOne) {
        items.push_back(item(folder, 5'000'000));
    } else {
        for (int i = 0; i < files; ++i) items.push_back(item(folder + "/file-" + std::to_string(i), 4096));
    }
    ScreenStage stage;
    showCleanup(stage);
    showGroups(*stage.model, {group("cache.npm", std::move(items))});
    stage.settle();
    Watchdog watchdog;
    stage.settle();
    watchdog.takeLongest();
    stage.cleanup.deleteSelected();
    runUntil([&] { return stage.model->cleanupMessage->has_value(); });
    stage.settle();
    report(what, watchdog.takeLongest());
    std::printf("  %s\n", stage.model->cleanupMessage->value_or("").c_str());
    stage.life.end();
}

void list(int count) {
    std::vector<CleanupGroup> groups;
    const std::vector<const char*> ids{"cache.npm", "cache.cargo", "xcode.derivedData", "downloads.stale",
                                       "trash"};
    for (const char* id : ids) {
        std::vector<ScannableItem> items;
        for (int i = 0; i < count / static_cast<int>(ids.size()); ++i) {
            items.push_back(item(std::string("/home/someone/") + id + "/folder/entry-" + std::to_string(i),
                                 10'000'000 - i));
        }
        groups.push_back(group(id, std::move(items)));
    }
    ScreenStage stage;
    showCleanup(stage);
    showGroups(*stage.model, groups);
    report("first paint of the list", milliseconds(stage, [] {}), 300);
    CleanupListModel& rows = *stage.cleanup.list();
    report("a band selected, deselected", milliseconds(stage, [&] { stage.cleanup.toggle(0); }), 100);
    report("a group selected", milliseconds(stage, [&] { stage.cleanup.toggle(1); }), 100);
    report("a group expanded", milliseconds(stage, [&] { rows.setExpanded(1, true); }), 100);
    report("a group selected while expanded", milliseconds(stage, [&] { stage.cleanup.toggle(1); }), 100);
    report("a search", milliseconds(stage, [&] { stage.model->searchText = std::string("npm"); }), 100);
    report("the search cleared", milliseconds(stage, [&] { stage.model->searchText = std::string(); }), 100);
    report("a group collapsed", milliseconds(stage, [&] { rows.setExpanded(1, false); }), 100);
    stage.life.end();
}

} // namespace

int main(int argc, char** argv) {
    const WindowBench bench(argc, argv);
    const TempTree& place = bench.place;
    const int entries = bench.number(1, 600'000);
    const int files = bench.number(2, 100'000);
    std::printf("A list of %d items\n", bench.number(3, 100'000));
    list(bench.number(3, 100'000));
    if (files > 0) {
        erase(place.path("one"), "longest stall while one item of many files is deleted", files, true);
        erase(place.path("many"), "longest stall while many items are deleted", files, false);
    }
    if (entries > 0) scan(place.path("home"), entries);
    return 0;
}
