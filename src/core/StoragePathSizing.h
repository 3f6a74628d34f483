#pragma once
#include "base/FileURL.h"
#include <cstdint>
#include <memory>

namespace vesko {

/// Measures one path for the storage dashboard, in allocated bytes. Blocks, called on several workers at
/// once; cannot fail: whatever goes wrong gives 0.
class StoragePathSizing {
public:
    virtual ~StoragePathSizing() = default;
    virtual std::int64_t allocatedBytes(const FileURL& url) const = 0;
    /// A sizer for measurements that belong together: what it tells may be as old as this call, and no older.
    /// Null where this one serves.
    virtual std::shared_ptr<const StoragePathSizing> forOneRun() const { return nullptr; }
};

} // namespace vesko
