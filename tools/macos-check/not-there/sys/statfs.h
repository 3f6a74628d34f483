#error "<sys/statfs.h> is not there on macOS"
