// Read before an adapter that asks for an entry's status, so that it gets the fields that macOS has beyond
// those of the system that the tests run on.
#pragma once
#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>

struct StatOnMacos : stat {
    timespec st_birthtimespec{};
    unsigned st_flags = 0; ///< as FakeAttributes has it for the name
};

int statOnMacos(int folder, const char* name, StatOnMacos* into, int flags);

#ifdef VESKO_STAT_ON_MACOS
#define stat StatOnMacos
#define fstatat statOnMacos
#define fstat(descriptor, into) statOnMacos(descriptor, "", into, AT_EMPTY_PATH)
#endif
