// Declarations of our own, after Apple's public documentation (statfs(2)): just what the adapters use. Only
// for the compile check on other systems; a build on macOS uses the real headers.
#pragma once
#include <stdint.h>
#include <sys/types.h>
#ifdef __cplusplus
extern "C" {
#endif
#define MFSTYPENAMELEN 16
#define MNT_RDONLY 0x00000001
#define MNT_LOCAL 0x00001000
#define MNT_NOATIME 0x10000000
#define MNT_NOWAIT 2
struct statfs {
    uint32_t f_bsize;
    int32_t f_iosize;
    uint64_t f_blocks, f_bfree, f_bavail, f_files, f_ffree;
    struct {
        int32_t val[2];
    } f_fsid;
    uid_t f_owner;
    uint32_t f_type, f_flags, f_fssubtype;
    char f_fstypename[MFSTYPENAMELEN], f_mntonname[1024], f_mntfromname[1024];
};
int statfs(const char* path, struct statfs* buffer);
int fstatfs(int descriptor, struct statfs* buffer);
#ifdef __cplusplus
}
#endif
