// Windows-style functions over POSIX and the platform seam, for code that is shared with systems
// where these names are native. Each function honours exactly what stands here, no more.
//
// Error numbers are POSIX ones: EINVAL (22) for a null or invalid argument. Nothing here logs, and
// nothing throws unless an argument of class type runs out of memory. All functions may be called
// from any thread.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <ctime>

// --- Text ---

// vsnprintf into `dst` of `size` bytes: always terminated when size is not 0, cut when too long.
// Returns the length before cutting, negative when the arguments cannot be encoded.
int vsprintf_s(char* dst, size_t size, const char* format, va_list arguments)
    __attribute__((format(printf, 3, 0)));
int sprintf_s(char* dst, size_t size, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

// The same for an array, which brings its own size.
template <size_t N>
__attribute__((format(printf, 2, 3))) int sprintf_s(char (&dst)[N], const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int length = vsprintf_s(dst, N, format, arguments);
    va_end(arguments);
    return length;
}

// --- Time ---

// Breaks `*t` (seconds since 1970-01-01 00:00:00 UTC, as POSIX counts them) down in the local time
// zone, which is taken anew from the environment on each call. Returns 0 with errno 0, or EINVAL
// with errno EINVAL when a pointer is null or the year does not fit; `*out` is then left as it was.
// Uses no static buffer, so calls on several threads do not disturb each other.
int localtime_s(struct tm* out, const time_t* t);

// --- Files ---

// Opens `path` with the part of `mode` before its first comma, blanks dropped, at most four
// characters of it: "w, ccs=UTF-8" opens with "w". Stores the stream, which the caller closes, or
// null. Returns 0 or the errno of the failed open; EINVAL when an argument is null.
[[nodiscard]] int u_fopen(FILE** fp, const char* path, const char* mode);

// --- Modules ---

// Loads the code of a plug-in bundle (its folder) or a shared object (the file itself). Returns a
// handle that FreeLibrary releases, or null for a null path, one that is not UTF-8 or
// neither of the two, or a failed load.
[[nodiscard]] void* LoadLibrary(const char* path);

// The address of the exported C function `name`, or null when an argument is null or there is no
// such function. Valid for the rest of the process.
[[nodiscard]] void* GetProcAddress(void* module, const char* name);

// Releases a handle of LoadLibrary; null is ignored. The code stays loaded, so that functions
// looked up earlier and threads that run in it stay valid.
void FreeLibrary(void* module);
