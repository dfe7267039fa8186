// As CoreFoundation/CoreFoundation.h beside this file: what kind of system a library is compiled
// for.
#pragma once

#define TARGET_OS_IPHONE 0
#define TARGET_OS_MAC 1
#define TARGET_OS_OSX 1
