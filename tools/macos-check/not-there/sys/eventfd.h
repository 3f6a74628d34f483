#error "<sys/eventfd.h> is not there on macOS"
