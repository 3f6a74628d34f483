#include "platform/posix/BackgroundPriority.h"

#include <pthread.h>
#include <sys/qos.h>

namespace vesko {

void workInTheBackground() noexcept { ::pthread_set_qos_class_self_np(QOS_CLASS_UTILITY, 0); }

} // namespace vesko
