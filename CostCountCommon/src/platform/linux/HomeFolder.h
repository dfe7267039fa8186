// Where the user's own files lie, after the XDG base directory rules.
#pragma once

#include <string>

namespace platform {

// Absolute, or empty when the system knows of none.
std::string HomeFolder();

// What the environment variable names, else `path` in the home folder; empty without one.
std::string BaseFolder(const char* variable, const char* path);

}  // namespace platform
