#error "<sys/prctl.h> is not there on macOS"
