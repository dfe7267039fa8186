// As CoreFoundation/CoreFoundation.h beside this file: declarations for a type-check.
#pragma once

#include <cstdint>

using copyfile_state_t = struct _copyfile_state*;
using copyfile_flags_t = uint32_t;

enum : copyfile_flags_t {
    COPYFILE_ACL = 1 << 0,
    COPYFILE_STAT = 1 << 1,
    COPYFILE_XATTR = 1 << 2,
    COPYFILE_DATA = 1 << 3,
    COPYFILE_SECURITY = COPYFILE_STAT | COPYFILE_ACL,
    COPYFILE_METADATA = COPYFILE_SECURITY | COPYFILE_XATTR,
    COPYFILE_ALL = COPYFILE_METADATA | COPYFILE_DATA,
    COPYFILE_EXCL = 1 << 17,
};

extern "C" int fcopyfile(int from, int to, copyfile_state_t state, copyfile_flags_t flags);
