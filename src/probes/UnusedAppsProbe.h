#pragma once
#include "core/ScanProbe.h"
#include "probes/SpotlightQuerying.h"
#include <cstdint>
#include <memory>
#include <utility>

namespace vesko {

/// Offers applications that nobody has opened for a long time. Where the search index does not answer, the
/// group does not appear; that is no error.
class UnusedAppsProbe final : public ScanProbe {
public:
    UnusedAppsProbe(GroupMetadata metadata, std::shared_ptr<const SpotlightQuerying> query,
                    std::int64_t olderThanDays)
        : metadata_(std::move(metadata)), query_(std::move(query)), olderThanDays_(olderThanDays) {}

    std::int64_t olderThanDays() const noexcept { return olderThanDays_; }
    const SpotlightQuerying& query() const noexcept { return *query_; }
    const GroupMetadata& metadata() const noexcept override { return metadata_; }
    /// Reads nothing of the context: applications lie where the system puts them.
    ProbeResult run(const ProbeContext& context) const override;

private:
    GroupMetadata metadata_;
    std::shared_ptr<const SpotlightQuerying> query_;
    std::int64_t olderThanDays_;
};

} // namespace vesko
