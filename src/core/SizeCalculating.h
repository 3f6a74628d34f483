#pragma once
#include "base/FileURL.h"
#include <cstdint>

namespace vesko {

/// Measures what a path takes on disk, in allocated bytes. Both operations block, perhaps for long, may be
/// called from many threads at once, and cannot fail: whatever goes wrong gives 0.
class SizeCalculating {
public:
    virtual ~SizeCalculating() = default;
    /// With `preferDiskUsage` symbolic links are followed.
    virtual std::int64_t size(const FileURL& url, bool preferDiskUsage) const = 0;
    /// A link counts as the link itself.
    virtual std::int64_t linkAwareSize(const FileURL& url) const = 0;
};

} // namespace vesko
