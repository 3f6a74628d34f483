#error "<sys/sysinfo.h> is not there on macOS"
