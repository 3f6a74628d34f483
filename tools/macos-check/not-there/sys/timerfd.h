#error "<sys/timerfd.h> is not there on macOS"
