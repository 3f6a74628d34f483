#error "<sys/signalfd.h> is not there on macOS"
