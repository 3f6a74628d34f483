#pragma once
#include "base/FileURL.h"
#include "core/DiskVolume.h"

namespace vesko {

/// What this machine says of the volume that holds the path. Blocks; any thread. The platform layer
/// implements it.
VolumeFigures readVolumeFigures(const FileURL& url);

/// Reads the volume of the user's home folder.
class DiskVolumeService final : public DiskVolumeReading {
public:
    DiskVolumeInfo readVolume() const override;
};

} // namespace vesko
