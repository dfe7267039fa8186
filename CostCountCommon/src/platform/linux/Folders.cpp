// Folders of the user after the XDG base directory rules.
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <vector>

#include "CostCountCommon/src/platform/Platform.h"

namespace platform {
namespace {

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

std::string DataHomeFolder() {
    // The rules say to ignore a value that is not absolute.
    const char* named = std::getenv("XDG_DATA_HOME");
    if (named != nullptr && *named == '/') {
        return named;
    }
    const std::string home = HomeFolder();
    return home.empty() ? home : home + "/.local/share";
}

}  // namespace

std::string GroupContainerFolder(const char* group) {
    const std::string folder = DataHomeFolder();
    return folder.empty() ? folder : folder + "/" + group;
}

}  // namespace platform
