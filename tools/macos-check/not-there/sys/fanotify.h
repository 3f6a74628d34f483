#error "<sys/fanotify.h> is not there on macOS"
