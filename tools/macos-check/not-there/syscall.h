#error "<syscall.h> is not there on macOS"
