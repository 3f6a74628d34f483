// Declarations of our own, after Apple's public documentation: which system is built for. Only for the
// compile check on other systems; a build on macOS uses the real header.
#pragma once
#define TARGET_OS_MAC 1
#define TARGET_OS_OSX 1
#define TARGET_OS_IPHONE 0
