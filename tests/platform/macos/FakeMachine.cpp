#include "platform/macos/FakeMachine.h"

#include <algorithm>
#include <cerrno>
#include <pthread.h>
#include <unistd.h>

using vesko::testing::fakeMachine;

namespace vesko::testing {

FakeMachine& fakeMachine() {
    static FakeMachine fake;
    return fake;
}

} // namespace vesko::testing

extern "C" {

int clockOnMacos(clockid_t clock, timespec* now) {
    fakeMachine().askedClock = clock;
    *now = fakeMachine().time;
    return 0;
}

int accessOnMacos(const char* path, int mode) {
    fakeMachine().askedAccess = {path, mode};
    if (std::ranges::count(fakeMachine().readable, path) > 0) return 0;
    errno = EPERM;
    return -1;
}

int pthread_set_qos_class_self_np(qos_class_t qosClass, int relativePriority) {
    fakeMachine().priorities.emplace_back(qosClass, relativePriority);
    return fakeMachine().refusesPriorities ? EPERM : 0;
}
}
