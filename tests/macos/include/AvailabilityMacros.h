// As CoreFoundation/CoreFoundation.h beside this file: for which versions of the system a library
// is compiled.
#pragma once

#define MAC_OS_X_VERSION_10_4 1040
#define MAC_OS_X_VERSION_MIN_REQUIRED 130000
