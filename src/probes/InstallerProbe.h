#pragma once
#include "core/ScanProbe.h"

namespace vesko {

/// Finds disk images and installer packages where downloads end up: in the home folder, "Downloads" and
/// "Desktop", none of them searched deeper. A folder with such an extension counts as well. A place that
/// can't be listed is no error: there is nothing.
class InstallerProbe final : public ScanProbe {
public:
    explicit InstallerProbe(GroupMetadata metadata);

    const GroupMetadata& metadata() const noexcept override { return metadata_; }
    ProbeResult run(const ProbeContext& context) const override;

private:
    GroupMetadata metadata_;
};

} // namespace vesko
