#include "base/QuietReading.h"

#include <sys/resource.h>

/// getiopolicy_np(3): new processes inherit the policy, and a thread's own comes before its process's.
namespace vesko {

namespace {

constexpr int fetching = IOPOL_TYPE_VFS_MATERIALIZE_DATALESS_FILES;

} // namespace

void readQuietly() noexcept {
    ::setiopolicy_np(IOPOL_TYPE_VFS_ATIME_UPDATES, IOPOL_SCOPE_PROCESS, IOPOL_ATIME_UPDATES_OFF);
    ::setiopolicy_np(fetching, IOPOL_SCOPE_PROCESS, IOPOL_MATERIALIZE_DATALESS_FILES_OFF);
}

PlaceholderFetching::PlaceholderFetching() noexcept
    : before_(::getiopolicy_np(fetching, IOPOL_SCOPE_THREAD)) {
    ::setiopolicy_np(fetching, IOPOL_SCOPE_THREAD, IOPOL_MATERIALIZE_DATALESS_FILES_ON);
}

PlaceholderFetching::~PlaceholderFetching() {
    // A policy that could not be read is put back to the one of the process.
    ::setiopolicy_np(fetching, IOPOL_SCOPE_THREAD,
                     before_ < 0 ? IOPOL_MATERIALIZE_DATALESS_FILES_DEFAULT : before_);
}

} // namespace vesko
