// What Apple's <pthread.h> adds, after its manual page pthread_set_qos_class_self_np(3).
#pragma once
#include_next <pthread.h>
#include <sys/qos.h>
#ifdef __cplusplus
extern "C" {
#endif
int pthread_set_qos_class_self_np(qos_class_t qosClass, int relativePriority);
#ifdef __cplusplus
}
#endif
