#error "<mntent.h> is not there on macOS"
