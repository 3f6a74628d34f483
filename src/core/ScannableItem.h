#pragma once
#include "base/FileURL.h"
#include "core/EnrichmentKey.h"
#include <cstdint>
#include <optional>
#include <string>

namespace vesko {

/// One thing on disk, or one object inside a tool, that can be removed. Selection, deletion and
/// de-duplication work on the URL: two items with the same URL are the same item.
struct ScannableItem {
    FileURL url;           ///< for a tool's object a local path that stands for it and need not exist
    std::int64_t size = 0; ///< allocated bytes
    bool isDirectory = false;
    EnrichmentKey enrichmentKey;
    std::optional<std::string> displayLabel; ///< shown instead of the name where the object has a better one

    const FileURL& id() const noexcept { return url; }
    /// The last path component.
    std::string name() const { return std::string(url.lastPathComponent()); }

    friend bool operator==(const ScannableItem&, const ScannableItem&) = default;
};

} // namespace vesko
