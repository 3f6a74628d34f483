#pragma once
#include "base/StringCatalog.h"
#include "concurrency/Concurrency.h"
#include "core/GroupBuilders.h"
#include "core/ProbeCatalog.h"
#include "orchestration/CleanupViewModel.h"
#include "support/ManualLoop.h"
#include "support/ScopedEnvironment.h"
#include "support/StoredParts.h"
#include "support/TempTree.h"
#include <condition_variable>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace vesko::testing {

/// A date source that stands still until it is told.
class FixedDates final : public DateSource {
public:
    Date now() const override { return now_; }
    void set(Date date) { now_ = date; }

private:
    Date now_ = dateFromUnixSeconds(1'700'000'000);
};

/// Holds callers of wait() until open() is called.
class Gate {
public:
    void open() {
        {
            const std::lock_guard lock(mutex_);
            isOpen_ = true;
        }
        opened_.notify_all();
    }
    void wait() {
        std::unique_lock lock(mutex_);
        opened_.wait(lock, [&] { return isOpen_; });
    }

private:
    std::mutex mutex_;
    std::condition_variable opened_;
    bool isOpen_ = false;
};

/// Answers what it was told to, and first waits for its gate when it has one.
class ScriptedProbe final : public ScanProbe {
public:
    ScriptedProbe(GroupMetadata metadata, ProbeResult result, std::shared_ptr<Gate> gate = nullptr)
        : metadata_(std::move(metadata)), result_(std::move(result)), gate_(std::move(gate)) {}
    const GroupMetadata& metadata() const noexcept override { return metadata_; }
    ProbeResult run(const ProbeContext&) const override {
        if (gate_) gate_->wait();
        return result_;
    }

private:
    GroupMetadata metadata_;
    ProbeResult result_;
    std::shared_ptr<Gate> gate_;
};

/// Finds nothing and starts nothing.
class NoTools final : public CommandRunning {
public:
    CommandResult run(const std::string&, const std::vector<std::string>&) const override { return {}; }
};

class NoSizes final : public SizeCalculating {
public:
    std::int64_t size(const FileURL&, bool) const override { return 0; }
    std::int64_t linkAwareSize(const FileURL&) const override { return 0; }
};

inline ScannableItem item(std::string path, std::int64_t size = 1000) {
    ScannableItem made;
    made.url = FileURL(std::move(path));
    made.size = size;
    made.enrichmentKey = EnrichmentKey::forURL(made.url);
    return made;
}

inline ScannableItem item(std::string path, std::int64_t size, std::string key) {
    ScannableItem made = item(std::move(path), size);
    made.enrichmentKey = {std::move(key)};
    return made;
}

/// The catalog's description of an id, or one made up for the test.
inline GroupMetadata metadata(const std::string& id, Safety safety = Safety::seguro) {
    GroupMetadata made{id, "box", sections::caches(), {"fixed"}, RelevancePolicy::standard, "", safety};
    if (const auto row = probeMetadataByID().find(id); row != probeMetadataByID().end()) made = row->second;
    made.baselineSafety = safety;
    return made;
}

inline CleanupGroup group(const std::string& id, std::vector<ScannableItem> items,
                          Safety safety = Safety::seguro) {
    return makeGroup(metadata(id, safety), std::move(items));
}

inline std::vector<std::string> idsOf(const std::vector<CleanupGroup>& groups) {
    std::vector<std::string> ids;
    for (const CleanupGroup& each : groups) ids.push_back(each.id);
    return ids;
}

inline std::vector<std::string> pathsOf(const CleanupGroup& group) {
    std::vector<std::string> paths;
    for (const ScannableItem& each : group.items) paths.push_back(each.url.path());
    return paths;
}

inline URLSet urls(const std::vector<std::string>& paths) {
    URLSet set;
    for (const std::string& path : paths) set.insert(FileURL(path));
    return set;
}

/// A volume with as much room as the test says, by default plenty.
class ScriptedVolume final : public DiskVolumeReading {
public:
    DiskVolumeInfo readVolume() const override {
        if (gate) gate->wait();
        return {2'000'000'000'000, availableBytes, "", AvailableSpaceMetric::standard};
    }

    std::int64_t availableBytes = 1'000'000'000'000;
    std::shared_ptr<Gate> gate; ///< of the workers that read
};

/// A view model on a hand-stepped loop, with its files in a fresh folder and scans that find what the test
/// says.
class CleanupTest : public ::testing::Test {
protected:
    CleanupTest() : language_(currentLanguage()) {
        setCurrentLanguage(Language::english);
        parts = storedParts(context, tree.url("state"), "model-1", dates);
        parts.defaults = defaults;
        parts.alertVolume = volume;
        parts.scanEngineFactory = [this](ScanMode mode) { return engine(mode); };
        parts.dates = &dates;
    }
    ~CleanupTest() override {
        for (const auto& gate : gates_) gate->open();
        model.reset();
        registry.cancelAll();
        loop.waitFor([&] { return registry.empty(); });
        setCurrentLanguage(language_);
    }

    void make() { model = std::make_shared<CleanupViewModel>(parts); }

    /// What the next scans find: one probe a group, in this order.
    void finds(std::vector<CleanupGroup> groups) {
        probes.clear();
        for (CleanupGroup& each : groups) {
            GroupMetadata row = metadata(each.id, each.baselineSafety);
            probes.push_back(std::make_shared<ScriptedProbe>(row, ProbeResult{std::move(each), {}}));
        }
    }
    void findsNothing(const std::string& id) {
        probes.push_back(std::make_shared<ScriptedProbe>(metadata(id), ProbeResult{}));
    }
    std::shared_ptr<Gate> findsBehindAGate(CleanupGroup found) {
        auto gate = std::make_shared<Gate>();
        gates_.push_back(gate);
        GroupMetadata row = metadata(found.id, found.baselineSafety);
        probes.push_back(std::make_shared<ScriptedProbe>(row, ProbeResult{std::move(found), {}}, gate));
        return gate;
    }
    ScanEngine engine(ScanMode mode) {
        modes.push_back(mode);
        ScanEngine made;
        made.probes = probes;
        made.size = std::make_shared<NoSizes>();
        made.maxConcurrency = maxConcurrency;
        made.demotedPaths.emplace();
        made.home = tree.root();
        made.runner = std::make_shared<NoTools>();
        made.dates = &dates;
        return made;
    }

    TaskHandle<void> beginScan(ScanMode mode = ScanMode::full) {
        return spawn(context, [this, mode] { return model->startScan(mode); });
    }
    void scan(ScanMode mode = ScanMode::full) { finish(beginScan(mode)); }
    TaskHandle<void> beginDeletion(std::optional<URLSet> only = std::nullopt) {
        return spawn(context, [this, only] { return model->deleteSelected(only); });
    }
    void deleteSelected(std::optional<URLSet> only = std::nullopt) { finish(beginDeletion(std::move(only))); }
    void finish(const TaskHandle<void>& task) {
        ASSERT_TRUE(loop.waitFor([&] { return task.done(); }));
        loop.drain();
    }
    /// Waits for the cache's write to end.
    std::optional<ScanCacheSnapshot> saved() {
        loop.waitFor([&] { return registry.empty(); });
        return parts.scanCacheStore->load();
    }

    const CleanupGroup& listed(const std::string& id) const {
        for (const CleanupGroup& each : *model->groups)
            if (each.id == id) return each;
        throw std::runtime_error("no group " + id);
    }

    ScopedEnvironment playground{"XCODE_RUNNING_FOR_PLAYGROUNDS", std::nullopt};
    ScopedEnvironment configuration{"XCTestConfigurationFilePath", std::nullopt};
    TempTree tree;
    ManualLoop loop;
    WorkerPool workers;
    TaskRegistry registry;
    TaskContext context{&loop, &workers, &loop, {}, &registry};
    FixedDates dates;
    std::shared_ptr<MemoryUserDefaults> defaults = std::make_shared<MemoryUserDefaults>();
    std::shared_ptr<ScriptedVolume> volume = std::make_shared<ScriptedVolume>();
    CleanupViewModelParts parts;
    ProbeList probes;
    std::vector<ScanMode> modes; ///< of the engines that were asked for
    std::int64_t maxConcurrency = 1;
    std::shared_ptr<CleanupViewModel> model;

private:
    Language language_;
    std::vector<std::shared_ptr<Gate>> gates_;
};

} // namespace vesko::testing
