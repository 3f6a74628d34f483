#include "platform/qt/DiskAccessSettings.h"

#include "base/Paths.h"
#include "platform/qt/FileManager.h"

namespace vesko {

void openDiskAccessSettings() { FileManager::openFolder(homeFolder()); }

} // namespace vesko
