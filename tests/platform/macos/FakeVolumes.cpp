// Compiled with statfs under another name, as is the adapter: this system has one of its own.
#include <sys/mount.h>
#include <sys/statvfs.h>

extern "C" int statfs(const char* path, struct statfs* into) {
    struct statvfs volume{};
    if (::statvfs(path, &volume) != 0) return -1;
    *into = {};
    into->f_bsize = static_cast<uint32_t>(volume.f_frsize);
    into->f_blocks = volume.f_blocks;
    into->f_bfree = volume.f_bfree;
    into->f_bavail = volume.f_bavail;
    return 0;
}
