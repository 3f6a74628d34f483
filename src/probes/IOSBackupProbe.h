#pragma once
#include "core/ScanProbe.h"

namespace vesko {

/// Offers each backup of a mobile device: every visible folder in "Library/Application Support/MobileSync/
/// Backup", where the platform's synchronisation service keeps them. What a backup holds is not looked at. A
/// folder that is missing or can't be listed is no error: there is nothing.
class IOSBackupProbe final : public ScanProbe {
public:
    explicit IOSBackupProbe(GroupMetadata metadata);

    const GroupMetadata& metadata() const noexcept override { return metadata_; }
    ProbeResult run(const ProbeContext& context) const override;

private:
    GroupMetadata metadata_;
};

} // namespace vesko
