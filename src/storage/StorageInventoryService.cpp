#include "storage/StorageInventoryService.h"

#include "base/CheckedSum.h"
#include "concurrency/Concurrency.h"
#include <algorithm>
#include <utility>

namespace vesko {
namespace {

using BucketDefinition = StorageInventoryService::BucketDefinition;
using Sizer = StorageInventoryService::Sizer;
using Events = AsyncStream<StorageInventoryUpdate>::Producer;
using Buckets = std::vector<StorageCategoryBucket>;

constexpr std::string_view systemID = "system";

std::vector<BucketDefinition> measurableDefinitions() {
    std::vector<BucketDefinition> measurable;
    for (const BucketDefinition& definition : StorageInventoryService::definitions())
        if (definition.id != systemID) measurable.push_back(definition);
    return measurable;
}

std::vector<FileURL> places(const BucketDefinition& definition, const FileURL& home) {
    std::vector<FileURL> urls;
    urls.reserve(definition.relativePaths.size() + definition.absolutePaths.size());
    for (const std::string& path : definition.relativePaths) urls.push_back(home.appending(path));
    for (const std::string& path : definition.absolutePaths) urls.emplace_back(path);
    return urls;
}

StorageCategoryBucket emptyBucket(const BucketDefinition& definition, const FileURL& home) {
    StorageCategoryBucket bucket{
        definition.id, definition.titleKey, definition.icon, 0, {}, definition.cleanupCategoryIDs};
    for (const FileURL& url : places(definition, home)) bucket.paths.push_back(url.path());
    return bucket;
}

/// A bucket that is half measured shows nothing, so a cancelled one counts 0.
Task<StorageCategoryBucket> measureOne(BucketDefinition definition, FileURL home, Sizer sizer) {
    const TaskContext task = co_await currentContext();
    StorageCategoryBucket bucket = emptyBucket(definition, home);
    std::int64_t total = 0;
    for (const FileURL& url : places(definition, home)) {
        if (task.stop.stopRequested()) co_return bucket;
        auto reading = offload([sizer, url] { return sizer->allocatedBytes(url); });
        const std::int64_t bytes = co_await reading;
        total = checkedSum(total, bytes);
    }
    bucket.bytes = total;
    co_return bucket;
}

/// One run over all measurable buckets. Lives in its own task.
class InventoryRun {
public:
    InventoryRun(FileURL home, Sizer sizer, std::int64_t volumeUsedBytes, Events events)
        : home_(std::move(home)), sizer_(StorageInventoryService::sizerForOneRun(std::move(sizer))),
          volumeUsedBytes_(volumeUsedBytes), events_(std::move(events)) {}

    Task<void> carryOut() {
        const TaskContext task = co_await currentContext();
        const auto body = [this](TaskGroup<StorageCategoryBucket>& group) { return measureAll(group); };
        co_await withTaskGroup<StorageCategoryBucket>(body);
        if (!task.stop.stopRequested()) events_.yield(InventoryFinished{inTableOrder()});
        events_.finish();
    }

private:
    Task<void> measureAll(TaskGroup<StorageCategoryBucket>& group) {
        const TaskContext task = co_await currentContext();
        for (const BucketDefinition& definition : measurableDefinitions())
            group.addTask([definition, this] { return measureOne(definition, home_, sizer_); });
        for (;;) {
            std::optional<Outcome<StorageCategoryBucket>> finished = co_await group.next();
            if (!finished || task.stop.stopRequested()) break;
            const StorageCategoryBucket bucket = finished->take();
            measured_.push_back(bucket);
            events_.yield(BucketMeasured{bucket});
        }
    }

    Buckets inTableOrder() const {
        Buckets ordered;
        for (const std::string& id : StorageInventoryService::measurableBucketIDs()) {
            const auto found = std::ranges::find(measured_, id, &StorageCategoryBucket::id);
            if (found != measured_.end()) ordered.push_back(*found);
        }
        auto system = StorageInventoryService::systemBucket(volumeUsedBytes_, ordered);
        if (system) ordered.push_back(std::move(*system));
        return ordered;
    }

    FileURL home_;
    Sizer sizer_;
    std::int64_t volumeUsedBytes_;
    Events events_;
    Buckets measured_; ///< in finishing order
};

} // namespace

Sizer StorageInventoryService::sizerForOneRun(Sizer sizer) {
    Sizer ofRun = sizer->forOneRun();
    return ofRun ? ofRun : sizer;
}

const std::vector<BucketDefinition>& StorageInventoryService::definitions() {
    using Words = std::vector<std::string>;
    static const std::vector<BucketDefinition> table{
        {"applications",
         "home.storage.bucket.applications",
         "app.badge",
         {"Applications"},
         {"/Applications"},
         Words{"apps"}},
        {"documents",
         "home.storage.bucket.documents",
         "doc.text",
         {"Documents", "Desktop", "Downloads"},
         {},
         Words{"downloads"}},
        {"media",
         "home.storage.bucket.media",
         "photo.on.rectangle",
         {"Pictures", "Movies", "Music"},
         {},
         std::nullopt},
        {"library",
         "home.storage.bucket.library",
         "books.vertical",
         {"Library"},
         {},
         Words{"caches", "nodejs", "xcode-builds", "swift-apple", "containers-vms", "system", "backups",
               "simulators"}},
        {std::string(systemID), "home.storage.bucket.system", "internaldrive", {}, {}, std::nullopt},
    };
    return table;
}

std::vector<std::string> StorageInventoryService::measurableBucketIDs() {
    std::vector<std::string> ids;
    for (const BucketDefinition& definition : measurableDefinitions()) ids.push_back(definition.id);
    return ids;
}

std::vector<StorageInventoryService::WatchRoot> StorageInventoryService::watchRoots(const FileURL& home) {
    std::vector<WatchRoot> roots;
    for (const BucketDefinition& definition : measurableDefinitions())
        for (const FileURL& url : places(definition, home)) roots.push_back({url.path(), definition.id});
    return roots;
}

AsyncStream<StorageInventoryUpdate> StorageInventoryService::measureStream(const TaskContext& context,
                                                                           const FileURL& home, Sizer sizer,
                                                                           std::int64_t volumeUsedBytes) {
    return AsyncStream<StorageInventoryUpdate>([&](Events events) {
        auto run = std::make_shared<InventoryRun>(home, std::move(sizer), volumeUsedBytes, events);
        const TaskHandle<void> task = spawn(context, [run] { return run->carryOut(); });
        events.onTermination([task](StreamEnd) { task.cancel(); });
    });
}

Task<std::optional<StorageCategoryBucket>> StorageInventoryService::measureBucket(std::string id,
                                                                                  FileURL home, Sizer sizer) {
    const std::vector<BucketDefinition> measurable = measurableDefinitions();
    const auto found = std::ranges::find(measurable, id, &BucketDefinition::id);
    if (found == measurable.end()) co_return std::nullopt;
    StorageCategoryBucket bucket = co_await measureOne(
        *found, std::move(home), StorageInventoryService::sizerForOneRun(std::move(sizer)));
    co_return bucket;
}

std::optional<StorageCategoryBucket> StorageInventoryService::systemBucket(std::int64_t volumeUsedBytes,
                                                                           const Buckets& measured) {
    const auto found = std::ranges::find(definitions(), systemID, &BucketDefinition::id);
    if (found == definitions().end()) return std::nullopt;
    StorageCategoryBucket bucket = emptyBucket(*found, FileURL());
    std::int64_t explained = 0;
    for (const StorageCategoryBucket& part : measured) explained = checkedSum(explained, part.bytes);
    bucket.bytes = explained >= volumeUsedBytes ? 0 : volumeUsedBytes - explained;
    return bucket;
}

Buckets StorageInventoryService::emptyMeasurableBuckets(const FileURL& home) {
    Buckets buckets;
    for (const BucketDefinition& definition : measurableDefinitions())
        buckets.push_back(emptyBucket(definition, home));
    return buckets;
}

} // namespace vesko
