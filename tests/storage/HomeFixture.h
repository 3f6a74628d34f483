#pragma once
#include "orchestration/CleanupFixture.h"
#include "storage/FakeEventStream.h"
#include "storage/HomeViewModel.h"
#include "storage/ScriptedFolderSizes.h"
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace vesko::testing {

/// Figures of buckets in their order.
using BucketBytes = std::vector<std::pair<std::string, std::int64_t>>;

/// A wall clock that goes with the loop's virtual time.
class LoopDates final : public DateSource {
public:
    explicit LoopDates(const ManualLoop& loop) : loop_(loop), begin_(loop.now()) {}
    Date now() const override {
        return dateFromUnixSeconds(1'700'000'000) +
               std::chrono::duration_cast<std::chrono::microseconds>(loop_.now() - begin_) + jump;
    }
    std::chrono::seconds jump{0};

private:
    const ManualLoop& loop_;
    Instant begin_;
};

class CountedVolume final : public DiskVolumeReading {
public:
    DiskVolumeInfo readVolume() const override {
        if (onReading) onReading();
        ++readings;
        return info;
    }
    std::function<void()> onReading; ///< before each answer
    DiskVolumeInfo info{1000, 400, "Disk", AvailableSpaceMetric::standard};
    mutable int readings = 0;
};

/// The loop serves as the workers too, so that a drain does everything that is due.
class HomeTest : public CleanupTest {
protected:
    HomeTest() {
        context.workers = &loop;
        parts.tasks = context;
        home.tasks = context;
        home.inventorySizer = sizes;
        home.store = store;
        home.volumeReader = volumes;
        home.makeStream = streams.maker();
        home.home = tree.root();
        home.dates = &clock;
        for (const auto& [path, bytes] : std::map<std::string, std::int64_t>{
                 {"Documents", 20}, {"Downloads", 5}, {"Movies", 40}, {"Library", 100}})
            setSize(path, bytes);
        make();
    }
    ~HomeTest() override { screen.reset(); }

    void setSize(const std::string& path, std::int64_t bytes) { sizes->bytes[tree.path(path)] = bytes; }
    void makeScreen() { screen = std::make_shared<HomeViewModel>(home); }
    void refresh() {
        screen->refresh(model);
        loop.drain();
    }
    void watch() {
        for (const char* folder : {"Documents", "Movies", "Library"}) tree.folder(folder);
        screen->startWatching();
        loop.drain();
    }
    /// What the watcher would tell.
    void change(const std::string& path) {
        streams.requests.at(0)->onEvents({tree.path(path)});
        loop.drain();
    }
    /// A cache that was written so long ago.
    void cache(std::chrono::seconds age, const BucketBytes& figures = {{"documents", 1}, {"media", 2}}) {
        StorageInventorySnapshot snapshot;
        snapshot.capturedAt = clock.now() - age;
        for (const auto& [id, bytes] : figures) {
            StorageCategoryBucket bucket;
            bucket.id = id;
            bucket.bytes = bytes;
            snapshot.buckets.push_back(bucket);
        }
        store->save(snapshot);
    }
    BucketBytes shown() const {
        BucketBytes list;
        if (screen->dashboard->has_value())
            for (const StorageCategoryBucket& bucket : (*screen->dashboard)->buckets)
                list.emplace_back(bucket.id, bucket.bytes);
        return list;
    }
    std::int64_t figure(const std::string& id) const {
        const auto bucket = screen->bucket(id);
        return bucket ? bucket->bytes : -1;
    }

    LoopDates clock{loop};
    FakeEventStreams streams;
    std::shared_ptr<ScriptedFolderSizes> sizes = std::make_shared<ScriptedFolderSizes>();
    std::shared_ptr<CountedVolume> volumes = std::make_shared<CountedVolume>();
    std::shared_ptr<StorageInventoryStore> store =
        std::make_shared<StorageInventoryStore>(tree.url("state/storage-inventory.json"));
    HomeViewModelParts home;
    std::shared_ptr<HomeViewModel> screen;
};

} // namespace vesko::testing
