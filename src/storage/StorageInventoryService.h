#pragma once
#include "base/FileURL.h"
#include "concurrency/AsyncStream.h"
#include "concurrency/Task.h"
#include "core/StoragePathSizing.h"
#include "storage/StorageInventoryUpdate.h"
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vesko {

/// What fills the start-up volume, in five buckets: four that are measured on disk, and "system", the used
/// space that these don't explain. Holds nothing; the operations belong to the home thread of their context
/// and measure on its workers.
class StorageInventoryService {
public:
    StorageInventoryService() = delete;

    struct BucketDefinition {
        std::string id;
        std::string titleKey;
        std::string icon;
        std::vector<std::string> relativePaths; ///< below the home folder
        std::vector<std::string> absolutePaths;
        std::optional<std::vector<std::string>> cleanupCategoryIDs;
    };
    struct WatchRoot {
        std::string root; ///< an absolute path
        std::string bucketID;
        friend bool operator==(const WatchRoot&, const WatchRoot&) = default;
    };
    using Sizer = std::shared_ptr<const StoragePathSizing>;

    /// For measurements that belong together, which may share what they read.
    static Sizer sizerForOneRun(Sizer sizer);

    static const std::vector<BucketDefinition>& definitions();
    /// All but "system", in the table's order.
    static std::vector<std::string> measurableBucketIDs();
    /// What lies below which root; a bucket may have several.
    static std::vector<WatchRoot> watchRoots(const FileURL& home);

    /// Measures all buckets at once, each bucket's paths one after the other, and tells each bucket the
    /// moment it is known; InventoryFinished comes last, unless the run is cancelled. Dropping the stream, or
    /// cancelling its reader, cancels the run.
    static AsyncStream<StorageInventoryUpdate> measureStream(const TaskContext& context, const FileURL& home,
                                                             Sizer sizer, std::int64_t volumeUsedBytes);
    /// One bucket; nothing for "system" and for an unknown id, 0 bytes when cancelled on the way.
    static Task<std::optional<StorageCategoryBucket>> measureBucket(std::string id, FileURL home,
                                                                    Sizer sizer);
    /// What `measured` (without "system") leaves of the used space, never below 0.
    static std::optional<StorageCategoryBucket>
    systemBucket(std::int64_t volumeUsedBytes, const std::vector<StorageCategoryBucket>& measured);
    /// The buckets before anything is measured.
    static std::vector<StorageCategoryBucket> emptyMeasurableBuckets(const FileURL& home);
};

} // namespace vesko
