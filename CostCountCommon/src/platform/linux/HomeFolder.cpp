#include "CostCountCommon/src/platform/linux/HomeFolder.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <vector>

#include "CostCountCommon/src/CancellationOff.h"
#include "CostCountCommon/src/platform/TrailingSlashes.h"

namespace platform {
namespace {

constexpr size_t USER_RECORD_SIZE = 1024;
constexpr size_t LARGEST_USER_RECORD = 1024 * 1024;

// The home folder in the record that `lookUp` fetches; empty when there is no such user.
template <typename LookUp>
std::string HomeFolderInRecord(LookUp lookUp) {
    // The look-up holds descriptors and locks that a cancellation would leave behind.
    const CancellationOff whole;
    for (std::vector<char> buffer(USER_RECORD_SIZE); buffer.size() <= LARGEST_USER_RECORD;
         buffer.resize(buffer.size() * 2)) {
        struct passwd record {};
        struct passwd* found = nullptr;
        const int error = lookUp(&record, buffer.data(), buffer.size(), &found);
        if (error != ERANGE) {
            return found != nullptr && found->pw_dir != nullptr
                       ? std::string(WithoutTrailingSlashes(found->pw_dir))
                       : std::string();
        }
    }
    return {};
}

}  // namespace

std::string HomeFolder() {
    const std::string named = FolderInVariable("HOME");
    return !named.empty()
               ? named
               : HomeFolderInRecord([](auto... rest) { return getpwuid_r(getuid(), rest...); });
}

std::string HomeFolderOf(const std::string& user) {
    return HomeFolderInRecord([&](auto... rest) { return getpwnam_r(user.c_str(), rest...); });
}

std::string FolderInVariable(const char* variable) {
    const char* named = std::getenv(variable);
    return named != nullptr && *named == '/' ? std::string(WithoutTrailingSlashes(named))
                                             : std::string();
}

std::string BaseFolder(const char* variable, const char* path) {
    std::string named = FolderInVariable(variable);
    if (!named.empty()) {
        return named;
    }
    const std::string home = HomeFolder();
    return home.empty() ? home : FolderFollowedBy(home, std::string("/").append(path));
}

std::string FolderFollowedBy(const std::string& folder, const std::string& rest) {
    return folder == "/" && !rest.empty() ? rest : folder + rest;
}

}  // namespace platform
