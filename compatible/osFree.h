// Windows-style functions over POSIX and the platform seam, for code that is shared with systems
// where these names are native. Each function honours exactly what stands here, no more, and its
// simplifications are part of the contract.
//
// Error numbers are POSIX ones: EINVAL (22) for a null or invalid argument, ERANGE (34) for a
// destination that is too small. Texts are UTF-8 unless they are UTF-16 (char16_t, in the machine's
// byte order). Nothing throws: a text that memory runs out for stays as it was, with ENOMEM where
// there is a result. Nothing here logs but CreateEvent. All functions may be called from any thread
// unless they say otherwise.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <ctime>
#include <string>

#include "cm_common/TypedefList.h"
#include "compatible/CFTypes.h"

// --- Text ---

// Copies `src` with its terminator into `dst` of `size` bytes. Returns 0; EINVAL when `dst` or
// `src` is null (`dst` becomes empty for a null `src` and a `size` above 0); ERANGE when it does
// not fit (`dst` becomes empty) or `size` is 0.
int strcpy_s(char* dst, size_t size, const char* src);

// Copies `count` bytes into `dst` of `size` bytes. Returns 0; EINVAL for a null `dst`. When `src`
// is null (EINVAL) or `count` is above `size` (ERANGE), all `size` bytes of `dst` become zero.
int memcpy_s(void* dst, size_t size, const void* src, size_t count);

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

// Writes `value` as decimal text of at most 7 characters, cut when longer, and a terminator.
// Returns 0, or EINVAL for a null `dst` or any `radix` but 10.
int u_itoa(int value, char* dst, int radix);

// Replaces every `from` by `to`, left to right; what was inserted is not searched again. An empty
// `from` replaces nothing.
void strReplace(std::string& text, const std::string& from, const std::string& to);

// A copy of `text` for SysFreeString; null for a null text or when memory is exhausted.
[[nodiscard]] char* SysAllocString(const char* text);
// Always 0.
int SysFreeString(void* p);

// Whether all parts are equal: 1, else 0.
int IsEqualGUID(GUID a, GUID b);

// --- UTF-16 and Core Foundation text ---
//
// Conversions are strict: text with lone surrogates, overlong forms or cut sequences is refused,
// with EINVAL where there is a result.

// A new string for CFRelease; null for a null text, one that is not UTF-8, or when memory is
// exhausted.
[[nodiscard]] CFStringRef CreateCFString(const char* text);

// Stores the text of `s` in `*out`; nothing happens when either is null.
void CFStringToUstring(CFStringRef s, std::string* out);

// `out` is left as it was unless the result is 0.
int ConvertUtf16CStringToString(const char16_t* src, std::string& out);

// The number of 16-bit units before the terminating zero; 0 for null.
size_t CountLengthOfUtf16CString(const char16_t* src);

// Converts into `dst` of `size` bytes, terminator included. EINVAL when a pointer is null, ERANGE
// when it does not fit; `dst` is then left as it was.
int ConvertUtf16CStringToUtf8CString(const char16_t* src, char* dst, size_t size);

// Converts into `dst` of `count` units, terminator included. EINVAL when a pointer is null, ERANGE
// when it does not fit or `count` is 0; `dst`, when there is one, then becomes empty.
int ConvertUtf8CStringToUtf16CString(const char* src, char16_t* dst, size_t count);

// --- Time ---

// Breaks `*t` (seconds since 1970-01-01 00:00:00 UTC, as POSIX counts them) down in the local time
// zone, which is taken anew from the environment on each call. Returns 0 with errno 0, or EINVAL
// with errno EINVAL when a pointer is null or the year does not fit; `*out` is then left as it was.
// Uses no static buffer, so calls on several threads do not disturb each other.
int localtime_s(struct tm* out, const time_t* t);

// The same in UTC, without setting errno. EINVAL also for a time before 1970.
int gmtimeMac(struct tm* out, const time_t* t);

// How many seconds the local time zone is ahead of UTC now.
int GetSecondsFromGMT();

// Sleeps `ms` milliseconds, counted as microseconds in 32 bits: 4294968 and more wrap around. A
// cancellation point unless `ms` is 0.
void Sleep(unsigned int ms);

// --- Files ---

// Opens `path` with the part of `mode` before its first comma, blanks dropped, at most four
// characters of it: "w, ccs=UTF-8" opens with "w". Stores the stream, which the caller closes, or
// null. Returns 0 or the errno of the failed open; EINVAL when an argument is null.
[[nodiscard]] int u_fopen(FILE** fp, const char* path, const char* mode);

// Creates the folder and every missing one above it, with mode 0755 less the umask. Backslashes
// count as slashes. False for a null or empty path, or when a level cannot be created or is not a
// folder.
bool CreateFolder(const char* path);
// The same, with 0 for success and -1 for failure; `window` is ignored.
int SHCreateDirectory(void* window, const char* path);

// Whether `path`, links followed, exists. Null never does. `isDirectory` may be null.
bool IsFileExist(const char* path, bool* isDirectory);
bool PathFileExists(const char* path);
bool PathIsDirectory(const char* path);

// In bytes; 0 for a null path, any failure, and whatever is not a regular file.
long long GetFileSize(const char* path);

// Copies the contents of a regular file with its mode, times, owner and group (where allowed),
// access list and extended attributes. The target appears whole or not at all: an earlier one stays
// as it was when the copy fails. So the target's folder must be one that can be written. With
// `failIfExists` not 0, an existing target is a failure. True on success.
bool CopyFile(const char* from, const char* to, int failIfExists);

// Stores `base`_PID_`tag`_N (without `tag` when it is below 0), N being the next number of this
// process for which no such file exists. Creates nothing. To be called on one thread at a time.
void MakeUniqueFileName(std::string* out, const char* base, int tag);

// --- Modules ---

// Loads the code of a plug-in bundle (its folder) or, on Linux, a shared object (the file itself).
// Returns a handle that FreeLibrary releases, or null for a null path, one that is not UTF-8 or
// neither of the two, or a failed load.
[[nodiscard]] void* LoadLibrary(const char* path);

// The address of the exported C function `name`, or null when an argument is null or there is no
// such function. Valid for the rest of the process.
[[nodiscard]] void* GetProcAddress(void* module, const char* name);

// Releases a handle of LoadLibrary; null is ignored. The code stays loaded, so that functions
// looked up earlier and threads that run in it stay valid.
void FreeLibrary(void* module);

// --- Processes and threads ---

int GetCurrentProcessId();
unsigned long GetCurrentThreadId();
// Whether there is such a process, of any user. One that ended counts until its parent has waited
// for it. 0 and negative numbers name groups of processes, as for kill, so the -1 of a failed
// launch must not be asked for.
bool ProcessExists(int pid);

// Starts `start(argument)` on a new thread. Returns its handle, for the waits below and
// CloseHandle, or null. What `start` returns is not kept. The other arguments are ignored.
[[nodiscard]] void* _beginthreadex(void* security, unsigned stackSize, unsigned (*start)(void*),
                                   void* argument, unsigned flags, unsigned* threadId);

// The identifier of the thread behind a handle of _beginthreadex; 0 for any other handle.
unsigned long GetThreadId(void* thread);

// Destroys a handle of _beginthreadex, CreateEvent or OpenEvent and returns 1; 0 for null. A thread
// is neither waited for nor stopped, and uses its handle until it ends: wait for it first.
int CloseHandle(void* handle);

// Always 1: no reason is kept.
unsigned GetLastError();
void DoNothing();

// --- Events ---
//
// An event is a named semaphore, seen by all processes. Waits give 0 when signalled, 258 on
// time-out, -1 on failure; 0xFFFFFFFF milliseconds mean for ever (see CHandleSupport.h).

// Creates an event that is not signalled. A `name` has 1 to 5 characters and must not exist yet; a
// null or empty one makes an event with a name of its own. Every SetEvent lets one wait through:
// `manualReset` and `initialState` are ignored. Null when it cannot be created.
[[nodiscard]] void* CreateEvent(void* security, bool manualReset, bool initialState,
                                const char* name);

// Opens an existing event by the whole name of its semaphore, or by the name it was created with.
// Closing the handle takes the name away, as for the handle of CreateEvent. Null when there is
// none.
[[nodiscard]] void* OpenEvent(unsigned access, bool inherit, const char* name);

bool SetEvent(void* event);
// Does nothing, deliberately: a wait has already consumed what a reset would take back.
void ResetEvent(void* event);

int WaitForSingleObject(void* handle, unsigned ms);
// The index of the signalled handle instead of 0, unless `waitAll`.
int WaitForMultipleObjects(unsigned long count, void* const* handles, bool waitAll, unsigned ms);
