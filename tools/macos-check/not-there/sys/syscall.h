#error "<sys/syscall.h> is not there on macOS"
