#include "platform/posix/DiskAccess.h"

#include <unistd.h>

namespace vesko {

bool hasFullDiskAccess() noexcept {
    // The privacy database itself is readable with the grant alone.
    return ::access("/Library/Application Support/com.apple.TCC/TCC.db", R_OK) == 0;
}

} // namespace vesko
