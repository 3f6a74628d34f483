// What Apple's <unistd.h> adds, after the manual pages getattrlist(2) and getattrlistbulk(2).
#pragma once
#include <stddef.h>
#include <stdint.h>
#include_next <unistd.h>
#ifdef __cplusplus
extern "C" {
#endif
int getattrlistbulk(int dirfd, void* attrs, void* buffer, size_t size, uint64_t options);
int getattrlist(const char* path, void* attrs, void* buffer, size_t size, unsigned int options);
#ifdef __cplusplus
}
#endif
