#include "platform/qt/BackgroundPriority.h"
#ifdef __APPLE__
#include <pthread.h>
#include <sys/qos.h>
#else
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace vesko {

#ifdef __APPLE__

void workInTheBackground() noexcept { ::pthread_set_qos_class_self_np(QOS_CLASS_UTILITY, 0); }

#else

void workInTheBackground() noexcept {
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::syscall(SYS_gettid)), 10);
}

#endif

} // namespace vesko
