#pragma once
#include "base/FileURL.h"
#include <cstdint>

namespace vesko {

/// Measures one path for the storage dashboard, in allocated bytes. Blocks, called on a worker; cannot fail:
/// whatever goes wrong gives 0.
class StoragePathSizing {
public:
    virtual ~StoragePathSizing() = default;
    virtual std::int64_t allocatedBytes(const FileURL& url) const = 0;
};

} // namespace vesko
