// Drives the Cleanup screen's state through a scan, selections and a deletion of many items, and prints for
// each how long it took and the longest single step of the main loop: the time for which the window would
// have stood still.
//
//   bench_stall [ITEMS]     by default 100,000; makes as many files in the temporary folder and removes them
#include "concurrency/Concurrency.h"
#include "core/GroupBuilders.h"
#include "core/ProbeCatalog.h"
#include "orchestration/CleanupViewModel.h"
#include "orchestration/ConsultantBreakdown.h"
#include "support/StoredParts.h"
#include "support/TempTree.h"
#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <deque>
#include <map>
#include <mutex>
#include <thread>

namespace vesko {
namespace {

using Steady = std::chrono::steady_clock;

/// What this thread has used of a processor.
std::chrono::nanoseconds processorTime() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

double milliseconds(Steady::duration duration) {
    return std::chrono::duration<double, std::milli>(duration).count();
}

/// A home loop on this thread that remembers its longest step. Timers never fire: nothing here waits for one.
class WatchedLoop final : public Executor, public Clock {
public:
    void post(std::function<void()> closure) override {
        {
            const std::lock_guard lock(mutex_);
            queue_.push_back(std::move(closure));
        }
        posted_.notify_one();
    }
    Instant now() const override { return Instant(Steady::now().time_since_epoch()); }
    Id at(Instant, std::function<void()>) override { return ++last_; }
    void cancel(Id) override {}

    /// Runs the loop until the task has ended; what a listener would redraw runs after each step that changed
    /// something, and is measured apart.
    template <class Done> void runUntil(Done done) {
        while (!done()) {
            std::function<void()> next;
            {
                std::unique_lock lock(mutex_);
                posted_.wait(lock, [&] { return !queue_.empty(); });
                next = std::move(queue_.front());
                queue_.pop_front();
            }
            measure(next);
        }
    }
    template <class Step> void measure(Step&& step) {
        const auto begun = Steady::now();
        const auto used = processorTime();
        step();
        longest_ = std::max(longest_, Steady::now() - begun);
        longestUsed_ = std::max<Steady::duration>(longestUsed_, processorTime() - used);
    }
    double takeLongest() { return milliseconds(std::exchange(longest_, {})); }
    double takeLongestUsed() { return milliseconds(std::exchange(longestUsed_, {})); }

private:
    std::mutex mutex_;
    std::condition_variable posted_;
    std::deque<std::function<void()>> queue_;
    Steady::duration longest_{};
    Steady::duration longestUsed_{};
    Id last_ = 0;
};

class FoundProbe final : public ScanProbe {
public:
    FoundProbe(GroupMetadata metadata, std::vector<ScannableItem> items)
        : metadata_(std::move(metadata)), result_(makeResult(metadata_, std::move(items))) {}
    const GroupMetadata& metadata() const noexcept override { return metadata_; }
    ProbeResult run(const ProbeContext&) const override { return result_; }

private:
    GroupMetadata metadata_;
    ProbeResult result_;
};

class NoSizes final : public SizeCalculating {
public:
    std::int64_t size(const FileURL&, bool) const override { return 0; }
    std::int64_t linkAwareSize(const FileURL&) const override { return 0; }
};

class Bench {
public:
    explicit Bench(std::size_t items) : items_(items) {
        parts_.scanEngineFactory = [this](ScanMode) {
            ScanEngine engine;
            engine.probes = probes_;
            engine.size = std::make_shared<NoSizes>();
            engine.demotedPaths.emplace();
            return engine;
        };
        makeProbes();
    }

    void run() {
        std::printf("%-34s %10s %14s %14s\n", "", "took ms", "longest step", "of processor");
        model_ = std::make_shared<CleanupViewModel>(parts_);
        await("full scan", [&] { return model_->startScan(ScanMode::full); });
        await("validation scan", [&] { return model_->startScan(ScanMode::validation); });
        step("redraw of a changed list", [&] { redraw(); });
        step("redraw of an unchanged list", [&] { redraw(); });
        step("select all", [&] { toggleAll(); });
        step("redraw after it", [&] { redraw(); });
        const ScannableItem one = model_->groups->front().items.front();
        step("one item", [&] { model_->setSelected(false, one); });
        step("redraw after it", [&] { redraw(); });
        step("search", [&] {
            model_->searchText = "cache";
            redraw();
            model_->searchText = std::string();
        });
        step("used space in categories", [&] { makeConsultantBreakdown(*model_->groups, 1ll << 40); });
        step("default selection", [&] { model_->applyDefaultSelection(); });
        model_->selectedItemIDs = URLSet();
        toggleAll();
        await("deletion", [&] { return model_->deleteSelected(); });
        std::printf("%s\n", model_->cleanupMessage->value_or("").c_str());
        construct(10'000);
    }

private:
    /// Half of it discoveries, the rest in the families that merge, cover and stand alone.
    void makeProbes() {
        const char* ids[] = {"discover.caches", "discover.caches", "discover.appSupport",
                             "project.nodeModules", "cache.npm"};
        std::map<std::string, std::vector<ScannableItem>> found;
        for (std::size_t index = 0; index < items_; ++index) {
            const std::string id = ids[index % std::size(ids)];
            ScannableItem item;
            item.url = tree_.file(id + "/folder " + std::to_string(index % 100) + "/com.example.tool" +
                                  std::to_string(index));
            item.size = static_cast<std::int64_t>(4096 + index);
            item.enrichmentKey = EnrichmentKey::forURL(item.url);
            found[id].push_back(std::move(item));
        }
        for (auto& [id, items] : found) {
            GroupMetadata metadata = probeMetadataByID().at(id);
            probes_.push_back(std::make_shared<FoundProbe>(metadata, std::move(items)));
        }
    }

    template <class Flow> void await(const char* name, Flow flow) {
        const auto begun = Steady::now();
        loop_.takeLongest();
        loop_.takeLongestUsed();
        const TaskHandle<void> task = spawn(parts_.tasks, [flow] { return flow(); });
        loop_.runUntil([&] { return task.done(); });
        report(name, Steady::now() - begun);
    }
    template <class Step> void step(const char* name, Step work) {
        const auto begun = Steady::now();
        loop_.takeLongest();
        loop_.takeLongestUsed();
        loop_.measure(work);
        report(name, Steady::now() - begun);
    }
    void report(const char* name, Steady::duration took) {
        std::printf("%-34s %10.1f %14.1f %14.1f\n", name, milliseconds(took), loop_.takeLongest(),
                    loop_.takeLongestUsed());
    }

    /// What a screen asks for all of its rows.
    void redraw() {
        for (const CleanupSectionEntry& band : model_->cleanupSections())
            for (const CleanupGroup& group : band.groups) {
                model_->resolveGroup(group);
                model_->groupFigures(group);
            }
        model_->selectedBytes();
        model_->selectedGroupCount();
        model_->sectionSegments();
        model_->recoverableBytes();
    }
    void toggleAll() {
        for (const CleanupSectionEntry& band : model_->cleanupSections()) model_->toggleSection(band.section);
    }

    void construct(std::size_t count) {
        ScanCacheSnapshot snapshot;
        std::vector<ScannableItem> items;
        for (std::size_t index = 0; index < count; ++index) {
            ScannableItem item;
            item.url = FileURL("/home/someone/Library/Caches/com.example.tool" + std::to_string(index));
            item.size = 4096;
            item.enrichmentKey = EnrichmentKey::forURL(item.url);
            items.push_back(std::move(item));
        }
        snapshot.groups = {makeGroup(probeMetadataByID().at("discover.caches"), std::move(items))};
        parts_.scanCacheStore->save(snapshot);
        parts_.enrichmentStore =
            std::make_shared<EnrichmentStore>(tree_.url("state/none.json"), "none", parts_.tasks);
        model_.reset();
        step("construction with 10,000 items", [&] { model_ = std::make_shared<CleanupViewModel>(parts_); });
        model_.reset();
        parts_.enrichmentStore =
            std::make_shared<EnrichmentStore>(tree_.url("state/none.json"), "none", parts_.tasks);
        parts_.scanCacheStore->prefetch();
        std::this_thread::sleep_for(std::chrono::seconds(1));
        step("the same, with the cache prefetched",
             [&] { model_ = std::make_shared<CleanupViewModel>(parts_); });
    }

    std::size_t items_;
    testing::TempTree tree_;
    WatchedLoop loop_;
    WorkerPool workers_;
    CleanupViewModelParts parts_ =
        testing::storedParts({&loop_, &workers_, &loop_, {}, nullptr}, tree_.url("state"), "none");
    ProbeList probes_;
    std::shared_ptr<CleanupViewModel> model_;
};

} // namespace
} // namespace vesko

int main(int argumentCount, char** arguments) {
    const std::size_t items = argumentCount > 1 ? std::strtoull(arguments[1], nullptr, 10) : 100'000;
    vesko::Bench(items).run();
}
