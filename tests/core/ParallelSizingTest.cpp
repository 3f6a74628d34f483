#include "core/ParallelSizing.h"

#include "concurrency/CurrentTask.h"
#include "concurrency/WorkerPool.h"
#include "core/BoundedSizeCalculator.h"
#include "core/DiskSizeCalculator.h"
#include "support/ScriptedSizes.h"
#include "support/TempTree.h"
#include "support/builders.h"
#include <atomic>
#include <chrono>
#include <future>
#include <gmock/gmock.h>
#include <latch>
#include <thread>

namespace vesko {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::ScriptedSizes;
using ::testing::SizeIs;
using testing::TempTree;

ParallelSizeInput input(const std::string& path, std::int64_t minBytes = 0) {
    ParallelSizeInput made;
    made.url = FileURL(path);
    made.minBytes = minBytes;
    return made;
}

ProbeContext contextWith(std::shared_ptr<const SizeCalculating> size, Executor* workers) {
    ProbeContext context;
    context.size = std::move(size);
    context.workers = workers;
    return context;
}

std::vector<std::string> pathsOf(const std::vector<ScannableItem>& items) {
    return testing::paths(ItemList(items));
}

/// The number behind the last "/" is the size.
std::int64_t byName(const FileURL& url) { return std::stoll(std::string(url.lastPathComponent())); }

TEST(SizeInParallel, NothingGivesNothing) {
    EXPECT_THAT(sizeInParallel({}, contextWith(nullptr, nullptr)), IsEmpty());
}

TEST(SizeInParallel, ItemsAreMadeOfTheirInputsAndSortedBySize) {
    WorkerPool workers;
    ParallelSizeInput labelled = input("/x/20");
    labelled.isDirectory = true;
    labelled.displayLabel = "twenty";
    labelled.enrichmentKey = EnrichmentKey{"app:twenty"};
    const auto items = sizeInParallel({input("/x/10"), labelled, input("/x/30")},
                                      contextWith(std::make_shared<ScriptedSizes>(byName), &workers));
    ScannableItem expected = testing::item("/x/20", 20, true);
    expected.displayLabel = "twenty";
    expected.enrichmentKey = {"app:twenty"};
    EXPECT_THAT(items,
                ElementsAre(testing::item("/x/30", 30, false), expected, testing::item("/x/10", 10, false)));
    EXPECT_EQ(items[0].enrichmentKey.rawValue, "url:/x/30");
    EXPECT_EQ(items[0].name(), "30");
}

TEST(SizeInParallel, TheFlagsDecideWhatIsAsked) {
    const auto sizes = std::make_shared<ScriptedSizes>();
    ParallelSizeInput preferring = input("/b");
    preferring.preferDiskUsage = true;
    ParallelSizeInput aware = preferring;
    aware.url = FileURL("/c");
    aware.useLinkAwareSize = true;
    sizeInParallel({input("/a"), preferring, aware}, contextWith(sizes, nullptr));
    EXPECT_THAT(sizes->calls(),
                ElementsAre(ScriptedSizes::Call{"/a", false, false}, ScriptedSizes::Call{"/b", true, false},
                            ScriptedSizes::Call{"/c", false, true}));
}

TEST(SizeInParallel, ASizeEqualToTheSmallestStays) {
    const auto items = sizeInParallel({input("/x/99", 100), input("/x/100", 100), input("/x/101", 100)},
                                      contextWith(std::make_shared<ScriptedSizes>(byName), nullptr));
    EXPECT_THAT(pathsOf(items), ElementsAre("/x/101", "/x/100"));
}

TEST(SizeInParallel, ASizeBelowOneGoesEvenWithoutASmallest) {
    const auto items = sizeInParallel({input("/x/0"), input("/x/-5", -10), input("/x/1")},
                                      contextWith(std::make_shared<ScriptedSizes>(byName), nullptr));
    EXPECT_THAT(pathsOf(items), ElementsAre("/x/1"));
}

TEST(SizeInParallel, EqualSizesStandInFinishingOrder) {
    WorkerPool workers;
    std::promise<void> secondIsDone;
    auto waitForSecond = secondIsDone.get_future().share();
    const auto sizes = std::make_shared<ScriptedSizes>([&](const FileURL& url) -> std::int64_t {
        if (url.path() == "/first") {
            waitForSecond.wait();
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        } else {
            secondIsDone.set_value();
        }
        return 7;
    });
    EXPECT_THAT(pathsOf(sizeInParallel({input("/first"), input("/second")}, contextWith(sizes, &workers))),
                ElementsAre("/second", "/first"));
}

TEST(SizeInParallel, ManyInputsNeedFewThreads) {
    WorkerPool workers;
    std::vector<ParallelSizeInput> inputs;
    for (int i = 1; i <= 100'000; ++i) inputs.push_back(input("/x/" + std::to_string(i)));
    const auto items = sizeInParallel(inputs, contextWith(std::make_shared<ScriptedSizes>(byName), &workers));
    ASSERT_THAT(items, SizeIs(100'000));
    EXPECT_EQ(items.front().size, 100'000);
    EXPECT_EQ(items.back().size, 1);
    EXPECT_LE(workers.threads(), 16U);
}

TEST(SizeInParallel, SixteenMeasurementsBlockAtOnce) {
    WorkerPool workers;
    std::atomic<int> inside = 0;
    std::promise<void> allInside;
    auto everyone = allInside.get_future().share();
    const auto sizes = std::make_shared<ScriptedSizes>([&](const FileURL&) -> std::int64_t {
        if (++inside == 16) allInside.set_value();
        return everyone.wait_for(std::chrono::seconds(20)) == std::future_status::ready ? 1 : 0;
    });
    std::vector<ParallelSizeInput> inputs(16, input("/x"));
    EXPECT_THAT(sizeInParallel(inputs, contextWith(sizes, &workers)), SizeIs(16));
}

/// An executor that never runs anything.
struct StuckExecutor final : Executor {
    void post(std::function<void()> closure) override { kept.push_back(std::move(closure)); }
    std::vector<std::function<void()>> kept;
};

TEST(SizeInParallel, AFullPoolDoesNotHoldItUp) {
    StuckExecutor stuck;
    const auto sizes = std::make_shared<ScriptedSizes>(byName);
    EXPECT_THAT(sizeInParallel({input("/x/1"), input("/x/2")}, contextWith(sizes, &stuck)), SizeIs(2));
    ASSERT_THAT(stuck.kept, SizeIs(1));
    stuck.kept.front()(); // a worker that comes too late finds nothing to do
    EXPECT_THAT(sizes->calls(), SizeIs(2));
}

TEST(SizeInParallel, ACancelledTaskKeepsWhatWasFinished) {
    WorkerPool workers;
    StopSource source;
    std::atomic<int> begun = 0;
    const auto sizes = std::make_shared<ScriptedSizes>([&](const FileURL& url) {
        if (++begun == 3) source.requestStop();
        return byName(url);
    });
    const CurrentTaskScope scope(source.token());
    const auto items =
        sizeInParallel({input("/x/1"), input("/x/2"), input("/x/3"), input("/x/4"), input("/x/5")},
                       contextWith(sizes, nullptr));
    EXPECT_THAT(pathsOf(items), ElementsAre("/x/3", "/x/2", "/x/1"));
    EXPECT_THAT(sizes->calls(), SizeIs(3));
}

TEST(SizeInParallel, MeasurementsOnWorkersSeeTheCancellation) {
    WorkerPool workers;
    StopSource source;
    std::atomic<int> told = 0;
    const auto sizes = std::make_shared<ScriptedSizes>([&](const FileURL&) -> std::int64_t {
        source.requestStop();
        if (currentTaskIsCancelled()) ++told;
        return 5;
    });
    const CurrentTaskScope scope(source.token());
    const auto items =
        sizeInParallel(std::vector<ParallelSizeInput>(1000, input("/x")), contextWith(sizes, &workers));
    EXPECT_EQ(static_cast<std::size_t>(told), sizes->calls().size());
    EXPECT_THAT(items, SizeIs(sizes->calls().size()));
    EXPECT_LE(items.size(), 16U);
}

/// Runs each closure on a bare thread, which knows of no task.
struct BareThreads final : Executor {
    ~BareThreads() override {
        for (std::thread& thread : threads) thread.join();
    }
    void post(std::function<void()> closure) override { threads.emplace_back(std::move(closure)); }
    std::vector<std::thread> threads;
};

TEST(SizeInParallel, TheCancellationGoesAlongToWhateverThreadMeasures) {
    BareThreads workers;
    StopSource source;
    std::latch allMeasure(4);
    std::atomic<int> told = 0;
    const auto sizes = std::make_shared<ScriptedSizes>([&](const FileURL&) -> std::int64_t {
        allMeasure.arrive_and_wait();
        source.requestStop();
        if (currentTaskIsCancelled()) ++told;
        return 5;
    });
    const CurrentTaskScope scope(source.token());
    sizeInParallel(std::vector<ParallelSizeInput>(4, input("/x")), contextWith(sizes, &workers));
    EXPECT_EQ(told, 4);
}

TEST(SizeInParallel, AnEmptyFolderSurvivesUnlessASmallestSizeForbidsIt) {
    const TempTree tree;
    tree.folder("empty");
    if (DiskSizeCalculator().size(tree.url("empty"), false) == 0)
        GTEST_SKIP() << "an empty folder takes no blocks on this file system";
    const ProbeContext context = contextWith(std::make_shared<DiskSizeCalculator>(), nullptr);
    EXPECT_THAT(sizeInParallel({input(tree.path("empty"))}, context), SizeIs(1));
    EXPECT_THAT(sizeInParallel({input(tree.path("empty"), 1 << 20)}, context), IsEmpty());
}

TEST(BoundedSizeCalculator, LetsNoMoreThanItsLimitMeasureAtOnce) {
    WorkerPool workers;
    std::atomic<int> inside = 0;
    std::atomic<int> most = 0;
    const auto slow = std::make_shared<ScriptedSizes>([&](const FileURL&) -> std::int64_t {
        const int now = ++inside;
        for (int seen = most; now > seen && !most.compare_exchange_weak(seen, now);) {}
        std::this_thread::sleep_for(std::chrono::milliseconds(3));
        --inside;
        return 1;
    });
    const auto limiter = std::make_shared<SizingConcurrencyLimiter>(10);
    EXPECT_EQ(limiter->maxConcurrent(), 10);
    const auto bounded = std::make_shared<BoundedSizeCalculator>(slow, limiter);
    std::vector<ParallelSizeInput> inputs(100, input("/x"));
    for (std::size_t i = 0; i < inputs.size(); i += 2) inputs[i].useLinkAwareSize = true;
    // Three probes at once share one limiter.
    const auto measure = [&] { return sizeInParallel(inputs, contextWith(bounded, &workers)).size(); };
    auto second = std::async(std::launch::async, measure);
    auto third = std::async(std::launch::async, measure);
    EXPECT_EQ(measure() + second.get() + third.get(), 300U);
    EXPECT_EQ(most, 10);
}

TEST(BoundedSizeCalculator, AsksTheSameOfTheOneBehindIt) {
    const auto sizes = std::make_shared<ScriptedSizes>();
    const BoundedSizeCalculator bounded(sizes, std::make_shared<SizingConcurrencyLimiter>(1));
    EXPECT_EQ(bounded.size(FileURL("/a"), true), 1000);
    EXPECT_EQ(bounded.linkAwareSize(FileURL("/b")), 1000);
    EXPECT_THAT(sizes->calls(),
                ElementsAre(ScriptedSizes::Call{"/a", true, false}, ScriptedSizes::Call{"/b", false, true}));
}

TEST(SizingConcurrencyLimiter, AWaiterSleeps) {
    SizingConcurrencyLimiter limiter(1);
    std::atomic<bool> entered = false;
    auto held = std::make_unique<SizingConcurrencyLimiter::Slot>(limiter);
    auto processorTime = std::async(std::launch::async, [&] {
        const SizingConcurrencyLimiter::Slot slot(limiter);
        entered = true;
        timespec used{};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
        return std::chrono::seconds(used.tv_sec) + std::chrono::nanoseconds(used.tv_nsec);
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_FALSE(entered);
    held.reset();
    EXPECT_LT(processorTime.get(), std::chrono::milliseconds(50));
    EXPECT_TRUE(entered);
}

} // namespace
} // namespace vesko
