#pragma once
#include "base/FileURL.h"
#include <optional>
#include <string>

namespace vesko {

/// Where a search begins, and how what it meets is called in its answer.
class SearchRoot {
public:
    /// `given` may be a link to a folder.
    explicit SearchRoot(const FileURL& given);

    /// Where the walk begins: never a link.
    const FileURL& walked() const noexcept { return walked_; }
    /// The path as an answer gives it: below the root as it was given. Nothing for a path that does not fit
    /// an answer of one path a line, because it is no UTF-8 or holds a line's end.
    std::optional<std::string> answered(const std::string& path) const;

private:
    FileURL given_;
    FileURL walked_;
};

} // namespace vesko
