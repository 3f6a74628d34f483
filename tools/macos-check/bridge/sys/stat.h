// The dates of a file have other names on macOS: st_mtimespec where POSIX says st_mtim. Two fields that only
// macOS has stand for others of a fitting type.
#pragma once
#define st_atim st_atimespec
#define st_mtim st_mtimespec
#define st_ctim st_ctimespec
#include_next <sys/stat.h>
#undef st_atim
#undef st_mtim
#undef st_ctim
#undef st_atime
#undef st_mtime
#undef st_ctime
#define st_atime st_atimespec.tv_sec
#define st_mtime st_mtimespec.tv_sec
#define st_ctime st_ctimespec.tv_sec
#define st_birthtimespec st_ctimespec
#define st_flags st_uid
enum {
    UF_IMMUTABLE = 2,
    UF_APPEND = 4,
    SF_IMMUTABLE = 0x20000,
    SF_APPEND = 0x40000,
    SF_DATALESS = 0x40000000
};
