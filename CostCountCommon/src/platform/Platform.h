// The platform seam: what the library asks of the system beyond the C++ standard library and POSIX.
// The build compiles one folder of sources beside this header; no other file asks which system it
// is on. Nothing here logs. A function that returns text gives the empty string when the system has
// no answer. Everything may be called from any thread.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "compatible/CFTypes.h"

namespace platform {

// --- The main bundle: the application, or the folder of the tool, that this process runs ---
//
// Paths are absolute and end without a slash. Whether the folders exist is not checked.

std::string MainBundleFolder();
std::string SupportFilesFolder();
std::string BuiltInPlugInsFolder();
std::string ResourcesFolder();
// The text of CFBundleVersion in the bundle's Info.plist; empty when there is none.
std::string MainBundleVersion();

// The text of `key` in the bundle's default string table, in the user's language.
std::optional<std::string> LocalizedString(const char* key);
// How many languages the bundle has resources for.
int LocalizationsCount();

// The resources folder of another bundle; empty when there is no bundle at `path`.
std::string ResourcesFolderOf(const std::string& path);

// --- Code ---

// Loads the code of the bundle folder, or on Linux the shared object, at `path`. Returns a handle
// for ReleaseModule, or null with the reason in `*reason` when that is not null.
[[nodiscard]] void* LoadModule(const char* path, std::string* reason);
[[nodiscard]] void* FindFunction(void* module, const char* name);
// The code itself stays loaded until the process ends.
void ReleaseModule(void* module);

// --- Core Foundation values ---

// New objects for CFRelease; null for text that is not UTF-8 or when memory is exhausted.
[[nodiscard]] CFStringRef CreateString(const char* text);
[[nodiscard]] CFURLRef CreateFileUrl(const std::string& path, bool isFolder);
std::string TextOf(CFStringRef string);

// --- Folders of the user ---

// The folder that all programs of the application group share; `group` is its identifier.
std::string GroupContainerFolder(const char* group);
// The folder for the data of the user's applications.
std::string ApplicationSupportFolder();
std::string TemporaryFolder();
// `path` with a leading ~ or ~NAME replaced by that user's home folder, unchanged without one.
std::string ExpandTilde(const std::string& path);

// --- Preferences of the user for this application ---

// Nothing when there is no such preference, or when it is not a number.
std::optional<int64_t> PreferenceNumber(const char* key);
// Stores and flushes it. No reader, and no crash, ever sees half of it.
void SetPreferenceNumber(const char* key, int64_t value);

// --- Time ---

// How many seconds the default time zone is ahead of UTC now.
int SecondsFromGmt();

// --- Files ---

// Copies data, security, attributes and status of the regular file open at `from` into the new one
// open at `to`; both are at their beginnings. A cancellation point.
bool CopyOpenFile(int from, int to);

// The names of a folder's entries that are UTF-8, sorted; false when it cannot be read.
bool ListFolder(const std::string& folder, std::vector<std::string>* names);
// Keeps the names in which the regular expression matches anywhere; false, with `*names` as it was,
// for an expression that cannot be compiled, or only at a cost out of proportion.
bool KeepMatching(const std::string& expression, std::vector<std::string>* names);

// --- Processes ---

struct Process {
    pid_t id;
    uid_t user;           // the real one
    std::string command;  // as the kernel keeps it, which may be cut
};

// The processes that run, of all users; false when the system does not tell.
bool ListProcesses(std::vector<Process>* processes);

struct LaunchFailure {
    std::string name;
    std::string reason;
};

// Starts the program at `path` with exactly one argument, as a child of this process that the
// caller waits for. It inherits environment, user and standard streams, and no other descriptor.
// Both texts are UTF-8 without NUL. The process identifier, or -1 with `*failure` filled.
pid_t Launch(const std::string& path, const std::string& argument, LaunchFailure* failure);

// --- Semaphores ---

// What sem_open and sem_unlink take for the semaphore that the library calls `name`.
std::string SemaphoreName(const std::string& name);

}  // namespace platform
