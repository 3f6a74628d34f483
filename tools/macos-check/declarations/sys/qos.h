// Declarations of our own, after Apple's public documentation (pthread_set_qos_class_self_np(3)): just what
// the adapters use. Only for the compile check on other systems; a build on macOS uses the real headers.
#pragma once
typedef enum : unsigned int { QOS_CLASS_UTILITY = 0x11 } qos_class_t;
