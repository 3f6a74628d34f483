// Declarations of our own, after Apple's public documentation: just the calls that the adapters use. Only for
// the compile check on other systems; a build on macOS uses the real headers.
#pragma once
#include <stddef.h>
#include <sys/qos.h>
#ifdef __cplusplus
extern "C" {
#endif
#ifdef __OBJC__
@protocol OS_dispatch_queue;
typedef id<OS_dispatch_queue> dispatch_queue_t;
@protocol OS_dispatch_object;
typedef id<OS_dispatch_object> dispatch_object_t;
@protocol OS_dispatch_queue_attr;
typedef id<OS_dispatch_queue_attr> dispatch_queue_attr_t;
#else
// Every object of the library is one of these, so that one call releases them all.
typedef struct dispatch_object_s {
}* dispatch_object_t;
typedef struct dispatch_queue_s : dispatch_object_s{} * dispatch_queue_t;
typedef struct dispatch_queue_attr_s : dispatch_object_s{} * dispatch_queue_attr_t;
#endif
typedef void (*dispatch_function_t)(void*);
#define DISPATCH_QUEUE_SERIAL NULL
typedef qos_class_t dispatch_qos_class_t;
dispatch_queue_attr_t dispatch_queue_attr_make_with_qos_class(dispatch_queue_attr_t attr,
                                                              dispatch_qos_class_t qosClass,
                                                              int relativePriority);
dispatch_queue_t dispatch_queue_create(const char* label, dispatch_queue_attr_t attr);
dispatch_queue_t dispatch_get_main_queue(void);
void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work);
void dispatch_sync_f(dispatch_queue_t queue, void* context, dispatch_function_t work);
#ifndef __OBJC__
void dispatch_release(dispatch_object_t object);
#endif
#ifdef __BLOCKS__
void dispatch_async(dispatch_queue_t queue, void (^block)(void));
#endif
#ifdef __cplusplus
}
#endif
