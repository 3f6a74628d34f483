// The marks of entries that macOS has, for the system that the tests run on.
#pragma once
#include_next <sys/stat.h>
enum : unsigned {
    UF_IMMUTABLE = 2,
    UF_APPEND = 4,
    SF_IMMUTABLE = 0x20000,
    SF_APPEND = 0x40000,
    SF_DATALESS = 0x40000000
};
