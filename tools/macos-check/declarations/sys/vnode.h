// Declarations of our own, after Apple's public documentation (getattrlistbulk(2)): just what the adapters
// use. Only for the compile check on other systems; a build on macOS uses the real headers.
#pragma once
enum vtype { VNON, VREG, VDIR, VBLK, VCHR, VLNK, VSOCK, VFIFO, VBAD, VSTR, VCPLX };
