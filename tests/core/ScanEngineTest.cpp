#include "core/ScanEngine.h"

#include "base/Paths.h"
#include "concurrency/Concurrency.h"
#include "core/GroupBuilders.h"
#include "probes/ScanCommandRunner.h"
#include "support/FakeRunner.h"
#include "support/ManualLoop.h"
#include "support/ScopedEnvironment.h"
#include "support/ScriptedProbe.h"
#include "support/ScriptedSizes.h"
#include "support/TempTree.h"
#include <atomic>
#include <gmock/gmock.h>
#include <latch>
#include <mutex>
#include <set>
#include <thread>

namespace vesko {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using testing::finder;
using testing::group;
using ::testing::IsEmpty;
using testing::item;
using testing::probe;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;

/// A moment that stands still, and who asked for it.
class RememberedDates final : public DateSource {
public:
    Date now() const override {
        const std::lock_guard lock(mutex_);
        askers_.push_back(std::this_thread::get_id());
        return dateFromUnixSeconds(1'700'000'000);
    }
    std::vector<std::thread::id> askers() const {
        const std::lock_guard lock(mutex_);
        return askers_;
    }

private:
    mutable std::mutex mutex_;
    mutable std::vector<std::thread::id> askers_;
};

Task<void> readAll(AsyncStream<ScanDelta>& stream, std::vector<ScanDelta>& events) {
    for (;;) {
        std::optional<ScanDelta> delta = co_await stream.next();
        if (!delta) break;
        events.push_back(std::move(*delta));
    }
}

class ScanEngineTest : public ::testing::Test {
protected:
    ScanEngineTest() {
        context.home = &loop;
        context.workers = &workers;
        context.clock = &loop;
        context.registry = &registry;
        engine.demotedPaths.emplace();
        engine.home = FileURL("/home/of-the-test");
        engine.size = std::make_shared<testing::ScriptedSizes>();
        engine.dates = &dates;
    }
    ~ScanEngineTest() override {
        shutDown(registry, [this] { loop.drain(); });
    }

    /// Every event of a whole scan.
    std::vector<ScanDelta> scanned() {
        std::vector<ScanDelta> events;
        AsyncStream<ScanDelta> stream = engine.scan(context);
        const auto reader = spawn(context, [&] { return readAll(stream, events); });
        EXPECT_TRUE(loop.waitFor([&] { return reader.done(); }));
        return events;
    }
    const ScanReport& reportOf(const std::vector<ScanDelta>& events) {
        return std::get<Finalize>(events.back()).report;
    }

    ManualLoop loop;
    WorkerPool workers;
    TaskRegistry registry;
    TaskContext context;
    RememberedDates dates;
    ScanEngine engine;
};

/// "+id" for a start, "-title" for an end, "." for the report.
std::string drawn(const std::vector<ScanDelta>& events) {
    std::string text;
    for (const ScanDelta& event : events) {
        if (const auto* started = std::get_if<ProbeStarted>(&event)) text += "+" + started->id + " ";
        if (const auto* finished = std::get_if<ProbeFinished>(&event))
            text += "-" + (finished->group ? finished->group->id : "") + " ";
        if (std::holds_alternative<Finalize>(event)) text += ".";
    }
    return text;
}

TEST_F(ScanEngineTest, WithoutProbesTheReportIsEmpty) {
    const auto events = scanned();
    ASSERT_THAT(events, SizeIs(1));
    EXPECT_EQ(reportOf(events), (ScanReport{{}, 0, {}, dates.now()}));
}

TEST_F(ScanEngineTest, AnEmptySetOfIdsToRunIsLikeNoProbes) {
    engine.probes = {finder("a", {item("/a", 1)})};
    engine.probeIDsToRun.emplace();
    EXPECT_THAT(engine.plannedProbeIDs(), IsEmpty());
    const auto events = scanned();
    ASSERT_THAT(events, SizeIs(1));
    EXPECT_EQ(reportOf(events), (ScanReport{{}, 0, {}, dates.now()}));
}

TEST_F(ScanEngineTest, WithoutAnyPlaceNothingStartsAndTheReportIsEmpty) {
    for (const std::int64_t none : {0, -3}) {
        std::atomic<bool> ran = false;
        engine.probes = {probe("a", [&](const ProbeContext&) { return ran = true, ProbeResult(); })};
        engine.maxConcurrency = none;
        const auto events = scanned();
        EXPECT_EQ(drawn(events), ".");
        EXPECT_EQ(reportOf(events), (ScanReport{{}, 0, {}, dates.now()}));
        EXPECT_FALSE(ran);
    }
}

TEST_F(ScanEngineTest, FiveOfSevenStartAtOnceAndThenOneForEachThatEnds) {
    std::latch fiveRun(5);
    std::atomic<int> inside = 0;
    std::atomic<int> most = 0;
    for (const char* id : {"1", "2", "3", "4", "5", "6", "7"}) {
        engine.probes.push_back(probe(id, [&, id](const ProbeContext&) {
            const int now = ++inside;
            for (int seen = most; now > seen && !most.compare_exchange_weak(seen, now);) {}
            if (*id <= '5') fiveRun.arrive_and_wait();
            --inside;
            return ProbeResult{group("x", {item(std::string("/") + id, 1)}), {}};
        }));
    }
    engine.maxConcurrency = 5;
    EXPECT_EQ(drawn(scanned()), "+1 +2 +3 +4 +5 -x +6 -x +7 -x -x -x -x -x .");
    EXPECT_EQ(most, 5);
}

TEST_F(ScanEngineTest, ProbesEndInFinishingOrder) {
    std::latch secondEnded(1);
    engine.probes = {probe("slow",
                           [&](const ProbeContext&) {
                               secondEnded.wait();
                               std::this_thread::sleep_for(std::chrono::milliseconds(30));
                               return ProbeResult{group("slow", {item("/s", 1)}), {}};
                           }),
                     probe("quick", [&](const ProbeContext&) {
                         secondEnded.count_down();
                         return ProbeResult{group("quick", {item("/q", 1)}), {}};
                     })};
    EXPECT_EQ(drawn(scanned()), "+slow +quick -quick -slow .");
}

TEST_F(ScanEngineTest, AProbeWithoutAGroupCountsAndItsErrorsReachTheReport) {
    engine.probes = {
        probe("a", [](const ProbeContext&) { return ProbeResult{std::nullopt, {"one", "two"}}; }),
        finder("b", {item("/b", 7)})};
    engine.maxConcurrency = 1;
    const auto events = scanned();
    ASSERT_EQ(drawn(events), "+a - +b -b .");
    const ProbeFinished expected{std::nullopt, {"", 1, 0, 0, 0.5}};
    EXPECT_EQ(std::get<ProbeFinished>(events[1]), expected);
    EXPECT_THAT(reportOf(events).errors, ElementsAre("one", "two"));
}

TEST_F(ScanEngineTest, AProbeThatThrowsIsAnErrorOfTheReport) {
    engine.probes = {
        probe("a", [](const ProbeContext&) -> ProbeResult { throw std::runtime_error("no memory"); }),
        finder("b", {item("/b", 7)})};
    engine.maxConcurrency = 1;
    const auto events = scanned();
    EXPECT_EQ(drawn(events), "+a - +b -b .");
    EXPECT_THAT(reportOf(events).errors, ElementsAre("no memory"));
}

TEST_F(ScanEngineTest, ProgressCountsProbesBytesAndItemsAndNeverReachesTheWhole) {
    engine.probes = {finder("a", {item("/a", 7), item("/b", 5)}), probe("none"),
                     finder("c", {item("/c", 30)})};
    engine.maxConcurrency = 1;
    const auto events = scanned();
    ASSERT_EQ(drawn(events), "+a -a +none - +c -c .");
    const double third = 1.0 / 3;
    EXPECT_EQ(std::get<ProbeFinished>(events[1]).progress, (ScanProgress{"title of a", 1, 12, 2, third}));
    EXPECT_EQ(std::get<ProbeFinished>(events[3]).progress, (ScanProgress{"", 2, 12, 2, 2.0 / 3}));
    EXPECT_EQ(std::get<ProbeFinished>(events[5]).progress, (ScanProgress{"title of c", 3, 42, 3, 0.99}));
}

TEST_F(ScanEngineTest, AStartCarriesIdAndTitle) {
    engine.probes = {probe("trash")};
    EXPECT_EQ(std::get<ProbeStarted>(scanned().front()), (ProbeStarted{"trash", probeTitle("trash")}));
}

TEST_F(ScanEngineTest, OnlyTheProbesToRunAreRunInTheirOrder) {
    for (const char* id : {"a", "b", "c", "d"}) engine.probes.push_back(probe(id));
    engine.probeIDsToRun = ProbeIDs{"d", "b", "unknown"};
    engine.maxConcurrency = 1;
    EXPECT_THAT(engine.plannedProbeIDs(), UnorderedElementsAre("b", "d"));
    EXPECT_EQ(drawn(scanned()), "+b - +d - .");
}

TEST_F(ScanEngineTest, TheSamePathFromTwoProbesIsCleanedOnlyInTheReport) {
    engine.probes = {finder("cache.tool", {item("/c/tool", 7)}),
                     finder("discover.caches", {item("/c/tool", 7), item("/c/other", 2)})};
    engine.maxConcurrency = 1;
    const auto events = scanned();
    ASSERT_EQ(drawn(events), "+cache.tool -cache.tool +discover.caches -discover.caches .");
    EXPECT_THAT(testing::paths(std::get<ProbeFinished>(events[3]).group->items),
                ElementsAre("/c/tool", "/c/other"));
    EXPECT_EQ(std::get<ProbeFinished>(events[3]).progress.bytesIndexed, 16);
    const ScanReport& report = reportOf(events);
    ASSERT_THAT(testing::ids(report.groups), ElementsAre("cache.tool", "discover.caches"));
    EXPECT_THAT(testing::paths(report.groups[1].items), ElementsAre("/c/other"));
    EXPECT_EQ(report.foundTotalBytes, 9);
}

TEST_F(ScanEngineTest, AReaderThatGoesStopsTheScan) {
    std::latch bothRun(2);
    std::atomic<int> told = 0;
    std::atomic<int> started = 0;
    const auto waiting = [&](const ProbeContext&) {
        ++started;
        bothRun.count_down();
        while (!currentTaskIsCancelled()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
        ++told;
        return ProbeResult{group("late", {item("/late", 1)}), {}};
    };
    for (const char* id : {"a", "b", "c", "d"}) engine.probes.push_back(probe(id, waiting));
    engine.maxConcurrency = 2;
    std::vector<ScanDelta> events;
    AsyncStream<ScanDelta> stream = engine.scan(context);
    const auto reader = spawn(context, [&] { return readAll(stream, events); });
    ASSERT_TRUE(loop.waitFor([&] { return bothRun.try_wait() && events.size() == 2; }));

    reader.cancel();

    EXPECT_TRUE(loop.waitFor([&] { return registry.empty(); }));
    EXPECT_TRUE(reader.done());
    EXPECT_EQ(drawn(events), "+a +b ");
    EXPECT_EQ(told, 2);
    EXPECT_EQ(started, 2);
}

TEST_F(ScanEngineTest, AStreamThatIsDroppedStopsTheScan) {
    std::latch runs(1);
    std::atomic<bool> told = false;
    engine.probes = {probe("a",
                           [&](const ProbeContext&) {
                               runs.count_down();
                               while (!currentTaskIsCancelled()) std::this_thread::yield();
                               told = true;
                               return ProbeResult();
                           }),
                     probe("b")};
    engine.maxConcurrency = 1;
    {
        const AsyncStream<ScanDelta> stream = engine.scan(context);
        ASSERT_TRUE(loop.waitFor([&] { return runs.try_wait(); }));
    }
    EXPECT_TRUE(loop.waitFor([&] { return registry.empty(); }));
    EXPECT_TRUE(told);
}

TEST_F(ScanEngineTest, ASlowReaderDoesNotHoldTheScanUp) {
    engine.probes = {finder("a", {item("/a", 1)}), finder("b", {item("/b", 1)})};
    engine.maxConcurrency = 1;
    AsyncStream<ScanDelta> stream = engine.scan(context);
    ASSERT_TRUE(loop.waitFor([&] { return registry.empty(); }));
    std::vector<ScanDelta> events;
    const auto reader = spawn(context, [&] { return readAll(stream, events); });
    ASSERT_TRUE(loop.waitFor([&] { return reader.done(); }));
    EXPECT_EQ(drawn(events), "+a -a +b -b .");
}

TEST_F(ScanEngineTest, AllProbesGetOneContext) {
    std::mutex mutex;
    std::vector<const ProbeContext*> seen;
    ProbeContext copy;
    for (const char* id : {"a", "b"})
        engine.probes.push_back(probe(id, [&](const ProbeContext& given) {
            const std::lock_guard lock(mutex);
            seen.push_back(&given);
            copy = given;
            return ProbeResult();
        }));
    engine.demotedPaths = {"/left/out"};
    engine.runner = std::make_shared<testing::FakeRunner>();
    scanned();
    ASSERT_THAT(seen, SizeIs(2));
    EXPECT_EQ(seen[0], seen[1]);
    EXPECT_EQ(copy.home, FileURL("/home/of-the-test"));
    EXPECT_EQ(copy.now, dates.now());
    EXPECT_EQ(copy.size, engine.size);
    EXPECT_THAT(copy.claimedPaths, IsEmpty());
    EXPECT_THAT(copy.demotedPaths, ElementsAre("/left/out"));
    EXPECT_EQ(copy.runner, engine.runner);
    EXPECT_EQ(copy.workers, &workers);
}

TEST_F(ScanEngineTest, TheHomeIsTheUsersUnlessItIsGivenAndApplicationsAlwaysComeFromThere) {
    const testing::TempTree tree;
    tree.file("Applications/Tool.app/Contents/Info.plist",
              "<plist><dict><key>CFBundleIdentifier</key><string>com.example.tool</string></dict></plist>");
    const testing::ScopedEnvironment home("HOME", tree.root().path());
    std::vector<FileURL> homes;
    std::vector<std::size_t> applications;
    engine.probes = {probe("a", [&](const ProbeContext& given) {
        homes.push_back(given.home);
        applications.push_back(given.installedBundleIDs.count("com.example.tool"));
        return ProbeResult();
    })};
    scanned();
    engine.home.reset();
    scanned();
    EXPECT_THAT(homes, ElementsAre(FileURL("/home/of-the-test"), tree.root()));
    EXPECT_THAT(applications, ElementsAre(1, 1));
}

TEST_F(ScanEngineTest, DemotedPathsComeFromTheStoreUnlessTheyAreGiven) {
    const testing::TempTree tree;
    const testing::ScopedEnvironment data("XDG_DATA_HOME", tree.root().path());
    tree.file("Vesko/demoted-paths.json", R"({"schemaVersion":1,"paths":["/left/out"]})");
    std::vector<std::unordered_set<std::string>> given;
    engine.probes = {probe("a", [&](const ProbeContext& context) {
        given.push_back(context.demotedPaths);
        return ProbeResult();
    })};
    engine.demotedPaths = {"/chosen"};
    scanned();
    engine.demotedPaths.reset();
    scanned();
    EXPECT_THAT(given, ElementsAre(ElementsAre("/chosen"), ElementsAre("/left/out")));
}

TEST_F(ScanEngineTest, WithoutARunnerEachScanGetsOneOfItsOwnThatAllItsProbesShare) {
    std::mutex mutex;
    std::vector<std::shared_ptr<const CommandRunning>> runners;
    const auto keep = [&](const ProbeContext& given) {
        const std::lock_guard lock(mutex);
        runners.push_back(given.runner);
        return ProbeResult();
    };
    engine.probes = {probe("a", keep), probe("b", keep)};
    scanned();
    scanned();
    ASSERT_EQ(runners.size(), 4U);
    EXPECT_TRUE(dynamic_cast<const ScanCommandRunner*>(runners[0].get()));
    EXPECT_EQ(runners[0], runners[1]);
    EXPECT_EQ(runners[2], runners[3]);
    EXPECT_NE(runners[0], runners[2]);
}

TEST_F(ScanEngineTest, ProbesAndTheReportAreWorkForOtherThreads) {
    std::atomic<bool> atHome = false;
    engine.probes = {probe("a", [&, home = std::this_thread::get_id()](const ProbeContext&) {
        return atHome = std::this_thread::get_id() == home, ProbeResult();
    })};
    scanned();
    EXPECT_FALSE(atHome);
    const auto askers = dates.askers(); // once when the scan begins, once when the report is made
    ASSERT_THAT(askers, SizeIs(2));
    EXPECT_EQ(askers[0], std::this_thread::get_id());
    EXPECT_NE(askers[1], std::this_thread::get_id());
}

TEST_F(ScanEngineTest, AnEngineScansMoreThanOnce) {
    engine.probes = {finder("a", {item("/a", 1)})};
    EXPECT_EQ(scanned(), scanned());
}

TEST(ScanEngineRules, NoPathIsClaimed) {
    EXPECT_THAT(claimedPaths({}, FileURL("/h")), IsEmpty());
    EXPECT_THAT(claimedPaths({probe("a"), probe("b")}, FileURL("/h")), IsEmpty());
}

TEST(ScanEngineRules, EveryProbeHasAnEmptyFingerprint) {
    const ProbeFingerprints expected{{"a", {}}, {"b", {}}};
    EXPECT_EQ(currentFingerprints({probe("b"), probe("a")}, FileURL("/h")), expected);
}

TEST(ScanEngineRules, EmptyFingerprintsForceEveryProbe) {
    const ProbeList probes{probe("a"), probe("b")};
    const ProbeFingerprints current = currentFingerprints(probes, FileURL("/h"));
    EXPECT_THAT(probesToValidate(current, current, probes), UnorderedElementsAre("a", "b"));
    EXPECT_THAT(probesToValidate({}, {}, probes), UnorderedElementsAre("a", "b"));
}

TEST(ScanEngineRules, OnlyAnUnchangedFingerprintThatTellsSomethingSparesAProbe) {
    const ProbeFingerprint told{{{"/a", dateFromUnixSeconds(5)}}};
    const ProbeFingerprint changed{{{"/a", dateFromUnixSeconds(6)}}};
    const ProbeList probes{probe("same"), probe("changed"), probe("new"), probe("empty"), probe("unknown")};
    const ProbeFingerprints cached{{"same", told}, {"changed", changed}, {"empty", {}}, {"unknown", told}};
    const ProbeFingerprints current{{"same", told}, {"changed", told}, {"new", told}, {"empty", {}}};
    EXPECT_THAT(probesToValidate(cached, current, probes),
                UnorderedElementsAre("changed", "new", "empty", "unknown"));
}

} // namespace
} // namespace vesko
