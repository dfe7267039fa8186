// Where the user's own files lie, after the XDG base directory rules.
#pragma once

#include <string>

namespace platform {

// All folders are absolute and end without a slash, and are empty when the system knows of none.

std::string HomeFolder();
// Of another user, by name.
std::string HomeFolderOf(const std::string& user);

// What the environment variable names; empty when it is not set, or relative, which would mean
// another folder in each process.
std::string FolderInVariable(const char* variable);
// The same, else `path` in the home folder.
std::string BaseFolder(const char* variable, const char* path);

// `folder` followed by `rest`, which is empty or begins with a slash.
std::string FolderFollowedBy(const std::string& folder, const std::string& rest);

}  // namespace platform
