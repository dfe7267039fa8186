// The few Core Foundation types and functions that stand in this library's interfaces. They are
// declared exactly as the system declares them where it has them, so both declarations may be seen
// together; elsewhere the library brings its own, reference-counted, and safe to retain and release
// on several threads.
#pragma once

extern "C" {

using CFTypeRef = const void*;
using CFStringRef = const struct __CFString*;
using CFURLRef = const struct __CFURL*;

// The caller of a function that is named Create, or of CFRetain, owns one reference and gives it
// back with CFRelease. Neither takes null.
CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);

// Writes the path of a file URL, UTF-8 and NUL-terminated, into `buffer` of `size` bytes. Returns 0
// when it does not fit. URLs of this library are absolute, so `resolveAgainstBase` changes nothing.
unsigned char CFURLGetFileSystemRepresentation(CFURLRef url, unsigned char resolveAgainstBase,
                                               unsigned char* buffer, long size);
}
