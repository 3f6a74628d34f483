#error "<sys/epoll.h> is not there on macOS"
