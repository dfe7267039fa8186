// Folders of the user after the XDG base directory rules.
#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <vector>

#include "CostCountCommon/src/platform/Platform.h"

namespace platform {
namespace {

constexpr size_t USER_RECORD_SIZE = 1024;
constexpr size_t LARGEST_USER_RECORD = 1024 * 1024;

// The home folder in the record that `lookUp` fetches; empty when there is no such user.
template <typename LookUp>
std::string HomeFolderInRecord(LookUp lookUp) {
    for (std::vector<char> buffer(USER_RECORD_SIZE); buffer.size() <= LARGEST_USER_RECORD;
         buffer.resize(buffer.size() * 2)) {
        struct passwd record {};
        struct passwd* found = nullptr;
        const int error = lookUp(&record, buffer.data(), buffer.size(), &found);
        if (error != ERANGE) {
            return found != nullptr && found->pw_dir != nullptr ? found->pw_dir : std::string();
        }
    }
    return {};
}

std::string HomeFolderOf(const std::string& user) {
    return HomeFolderInRecord([&](auto... rest) { return getpwnam_r(user.c_str(), rest...); });
}

std::string WithoutTrailingSlashes(std::string path) {
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    return path;
}

// The folder that the variable names; empty when it names none or is relative, which would mean
// another folder in each process.
std::string FolderInVariable(const char* variable) {
    const char* named = std::getenv(variable);
    return named != nullptr && *named == '/' ? WithoutTrailingSlashes(named) : std::string();
}

std::string HomeFolder() {
    const std::string named = FolderInVariable("HOME");
    if (!named.empty()) {
        return named;
    }
    return WithoutTrailingSlashes(
        HomeFolderInRecord([](auto... rest) { return getpwuid_r(getuid(), rest...); }));
}

// `rest` is empty or begins with a slash.
std::string Joined(const std::string& folder, const std::string& rest) {
    return folder == "/" && !rest.empty() ? rest : folder + rest;
}

}  // namespace

std::string ApplicationSupportFolder() {
    const std::string named = FolderInVariable("XDG_DATA_HOME");
    if (!named.empty()) {
        return named;
    }
    const std::string home = HomeFolder();
    return home.empty() ? home : Joined(home, "/.local/share");
}

std::string GroupContainerFolder(const char* group) {
    const std::string folder = ApplicationSupportFolder();
    return folder.empty() ? folder : Joined(folder, std::string("/").append(group));
}

std::string TemporaryFolder() {
    const std::string named = FolderInVariable("TMPDIR");
    return named.empty() ? "/tmp" : named;
}

std::string ExpandTilde(const std::string& path) {
    if (path.empty() || path.front() != '~') {
        return path;
    }
    const size_t end = path.find('/');
    const std::string user = path.substr(1, end == std::string::npos ? end : end - 1);
    const std::string home =
        user.empty() ? HomeFolder() : WithoutTrailingSlashes(HomeFolderOf(user));
    const std::string rest = end == std::string::npos ? std::string() : path.substr(end);
    return home.empty() ? path : Joined(home, rest);
}

}  // namespace platform
