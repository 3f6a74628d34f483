// Declarations of our own, after Apple's public documentation: just the calls that the adapters use. Only for
// the compile check on other systems; a build on macOS uses the real headers.
#pragma once
#include <stddef.h>
#include <stdint.h>
#include <time.h>
#ifdef __cplusplus
extern "C" {
#endif
typedef uint32_t attrgroup_t;
struct attrlist {
    unsigned short bitmapcount;
    uint16_t reserved;
    attrgroup_t commonattr, volattr, dirattr, fileattr, forkattr;
};
typedef struct attribute_set {
    attrgroup_t commonattr, volattr, dirattr, fileattr, forkattr;
} attribute_set_t;
typedef struct attrreference {
    int32_t attr_dataoffset;
    uint32_t attr_length;
} attrreference_t;
enum { ATTR_BIT_MAP_COUNT = 5, FSOPT_NOFOLLOW = 1 };
#define ATTR_CMN_RETURNED_ATTRS 0x80000000u
enum {
    ATTR_CMN_NAME = 1,
    ATTR_CMN_DEVID = 2,
    ATTR_CMN_OBJTYPE = 8,
    ATTR_CMN_CRTIME = 0x200,
    ATTR_CMN_MODTIME = 0x400,
    ATTR_CMN_OWNERID = 0x8000,
    ATTR_CMN_FLAGS = 0x40000,
    ATTR_CMN_FILEID = 0x02000000,
    ATTR_CMN_ERROR = 0x20000000,
    ATTR_DIR_MOUNTSTATUS = 4,
    ATTR_DIR_ALLOCSIZE = 8,
    DIR_MNTSTATUS_MNTPOINT = 1,
    ATTR_FILE_LINKCOUNT = 1,
    ATTR_FILE_ALLOCSIZE = 4,
    ATTR_FILE_DATALENGTH = 0x200
};
#ifdef __cplusplus
}
#endif
