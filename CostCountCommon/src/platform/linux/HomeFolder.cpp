#include "CostCountCommon/src/platform/linux/HomeFolder.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <vector>

namespace platform {

std::string HomeFolder() {
    const char* home = std::getenv("HOME");
    if (home != nullptr && *home == '/') {
        return home;
    }
    std::vector<char> buffer(16384);
    struct passwd record {};
    struct passwd* found = nullptr;
    if (getpwuid_r(getuid(), &record, buffer.data(), buffer.size(), &found) == 0 &&
        found != nullptr && found->pw_dir != nullptr) {
        return found->pw_dir;
    }
    return {};
}

std::string BaseFolder(const char* variable, const char* path) {
    // The rules say to ignore a value that is not absolute.
    const char* named = std::getenv(variable);
    if (named != nullptr && *named == '/') {
        return named;
    }
    const std::string home = HomeFolder();
    return home.empty() ? home : home + "/" + path;
}

}  // namespace platform
