#pragma once
#include "base/FileURL.h"
#include <cstdint>
#include <optional>
#include <string>

namespace vesko {

/// One item under review.
struct PendingReviewItem {
    std::string id; ///< decimal counter, unique within the run
    FileURL url;
    std::int64_t size = 0; ///< bytes
    std::string name;      ///< as found
    bool isDirectory = false;
    std::string path;
    std::optional<std::string> currentGroupID; ///< absent for a candidate, which is in no group

    friend bool operator==(const PendingReviewItem&, const PendingReviewItem&) = default;
};

} // namespace vesko
