#include "platform/posix/BackgroundPriority.h"

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace vesko {

void workInTheBackground() noexcept {
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::syscall(SYS_gettid)), 10);
}

} // namespace vesko
