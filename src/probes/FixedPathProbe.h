#pragma once
#include "base/Date.h"
#include "core/ParallelSizeInput.h"
#include "core/ScanProbe.h"
#include "probes/AgeMetric.h"
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace vesko {

/// Reads the two dates of a file; nothing where one can't be had.
struct FileDates {
    std::optional<Date> (*modification)(const FileURL&) noexcept;
    std::optional<Date> (*lastAccess)(const FileURL&) noexcept;
};
/// The file system's own.
const FileDates& platformFileDates() noexcept;

/// What a row of the catalog says of its places below the home folder.
struct FixedPathRow {
    GroupMetadata metadata;
    std::vector<std::string> relativePaths; ///< visited in order
    bool expandChildren =
        false; ///< true: every visible child of a path is a candidate; false: the path itself
    std::int64_t minBytes = 0;
    std::optional<std::int64_t> olderThanDays; ///< absent: no age rule
    bool preferDiskUsage = false;
    std::set<std::string> excludedExtensions; ///< lower case, no dot; looked at only with expandChildren
    AgeMetric ageMetric = AgeMetric::modification;

    friend bool operator==(const FixedPathRow&, const FixedPathRow&) = default;
};

/// Looks at a fixed list of paths below the home folder. Paths that don't exist, folders that can't be listed
/// and dates that can't be read are no errors: there is nothing, no children, no age rule for that candidate.
class FixedPathProbe final : public ScanProbe {
public:
    explicit FixedPathProbe(FixedPathRow row, const FileDates& dates = platformFileDates());

    const FixedPathRow& row() const noexcept { return row_; }
    const GroupMetadata& metadata() const noexcept override { return row_.metadata; }
    ProbeResult run(const ProbeContext& context) const override;

private:
    std::vector<FileURL> candidates(const FileURL& base) const;
    bool isExcluded(const FileURL& candidate) const;
    bool isOldEnough(const FileURL& candidate, Date now) const;
    std::optional<Date> ageDate(const FileURL& candidate) const;
    EnrichmentKey key(const FileURL& candidate) const;
    ParallelSizeInput input(const FileURL& candidate) const;

    FixedPathRow row_;
    FileDates dates_;
};

} // namespace vesko
