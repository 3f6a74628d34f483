#error "<sys/vfs.h> is not there on macOS"
