#error "<malloc.h> is not there on macOS"
