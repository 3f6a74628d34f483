#error "<sys/sendfile.h> is not there on macOS"
