// Names that musl's headers declare and macOS does not have: a source that uses one of them fails to compile.
// Each header that declares one is read first, since a poisoned name may not come up again.
#pragma once
#include <dirent.h>
#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>
#ifdef __cplusplus
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <fstream>
#include <functional>
#include <mutex>
#include <thread>
#endif
#undef getdents
#undef getdents64
#undef O_PATH
#undef O_TMPFILE
#undef O_NOATIME
#undef AT_EMPTY_PATH
#undef AT_NO_AUTOMOUNT
#undef CLOCK_BOOTTIME
#undef SOCK_CLOEXEC
#undef SOCK_NONBLOCK
#undef MSG_NOSIGNAL
#pragma GCC poison fallocate posix_fallocate pipe2 dup3 accept4 renameat2 statx getdents getdents64 syscall
#pragma GCC poison posix_fadvise readahead sync_file_range copy_file_range memfd_create gettid execveat
#pragma GCC poison O_PATH O_TMPFILE O_NOATIME AT_EMPTY_PATH AT_NO_AUTOMOUNT CLOCK_BOOTTIME SOCK_CLOEXEC SOCK_NONBLOCK
#pragma GCC poison secure_getenv program_invocation_name strchrnul mempcpy
