#pragma once
#include "core/CleanupGroup.h"
#include "core/GroupMetadata.h"
#include "core/ProbeContext.h"
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vesko {

/// What a probe answers.
struct ProbeResult {
    std::optional<CleanupGroup> group; ///< absent when nothing worth showing was found
    std::vector<std::string> errors;   ///< in the order in which they happened

    friend bool operator==(const ProbeResult&, const ProbeResult&) = default;
};

/// Looks in one kind of place and answers with one group. A value over its parameters, immutable once built.
class ScanProbe {
public:
    virtual ~ScanProbe() = default;
    /// Does no work.
    virtual const GroupMetadata& metadata() const noexcept = 0;
    /// Blocks; called on a worker. Cannot fail: what goes wrong is text in the result's errors. Where it
    /// loops it looks at currentTaskIsCancelled() and then returns what it has.
    virtual ProbeResult run(const ProbeContext& context) const = 0;
};

using ProbeList = std::vector<std::shared_ptr<const ScanProbe>>;

} // namespace vesko
