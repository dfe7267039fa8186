// What a copy of a file takes over beside its contents.
#pragma once

#include <sys/stat.h>

namespace platform {

// Gives the open regular file `to` the owner, group, extended attributes with the access list, mode
// and times of the open regular file `from`, whose status was `status`. The times come last, so the
// contents must be there already.
//
// An owner, group or attribute that this process may not set, or that the file system of `to` does
// not know, is left out, and so are the rights that would then go to somebody else: the set-ID bits
// without owner and group, the mask of an access list as rights of the group. False with errno for
// any other failure. No cancellation point.
bool CopyAttributes(int from, const struct stat& status, int to);

}  // namespace platform
