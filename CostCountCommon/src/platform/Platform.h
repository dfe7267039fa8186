// The platform seam: what the library asks of the system beyond the C++ standard library and POSIX.
// The build compiles one folder of sources beside this header; no other file asks which system it
// is on. Nothing here logs. A function that returns text gives the empty string when the system has
// no answer. Everything may be called from any thread.
#pragma once

#include <string>

namespace platform {

// --- The main bundle: the application, or the folder of the tool, that this process runs ---
//
// Paths are absolute and end without a slash. Whether the folders exist is not checked.

std::string MainBundleFolder();
std::string SupportFilesFolder();
std::string BuiltInPlugInsFolder();
// The text of CFBundleVersion in the bundle's Info.plist; empty when there is none.
std::string MainBundleVersion();

// --- Code ---

// Loads the code of the bundle folder, or the shared object, at `path`. Returns a handle for
// ReleaseModule, or null with the reason in `*reason` when that is not null.
[[nodiscard]] void* LoadModule(const char* path, std::string* reason);
[[nodiscard]] void* FindFunction(void* module, const char* name);
// The code itself stays loaded until the process ends.
void ReleaseModule(void* module);

// --- Folders of the user ---

// The folder that all programs of the application group share; `group` is its identifier.
std::string GroupContainerFolder(const char* group);

}  // namespace platform
