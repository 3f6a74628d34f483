#include "core/DiskVolumeService.h"

#include "base/Paths.h"

namespace vesko {

DiskVolumeInfo DiskVolumeService::readVolume() const { return volumeInfo(readVolumeFigures(homeFolder())); }

} // namespace vesko
