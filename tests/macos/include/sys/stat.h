// What the C library's header of this name lacks of the system's.
#pragma once

#include_next <sys/stat.h>

#ifdef __cplusplus
extern "C"
#endif
    int
    fchflags(int file, unsigned int flags);
