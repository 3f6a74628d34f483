#pragma once
#include "core/StoragePathSizing.h"

namespace vesko {

/// The quick figure of a folder, else what `du` says. Links are not followed, nothing is walked, and no
/// limiter stands before it.
class DirectoryStoragePathSizer final : public StoragePathSizing {
public:
    std::int64_t allocatedBytes(const FileURL& url) const override;
};

} // namespace vesko
