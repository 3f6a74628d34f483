#error "<sys/inotify.h> is not there on macOS"
