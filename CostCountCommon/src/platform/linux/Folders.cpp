// Folders of the user.
#include <string>

#include "CostCountCommon/src/platform/Platform.h"
#include "CostCountCommon/src/platform/TrailingSlashes.h"
#include "CostCountCommon/src/platform/linux/HomeFolder.h"

namespace platform {

std::string ApplicationSupportFolder() {
    return BaseFolder("XDG_DATA_HOME", ".local/share");
}

std::string GroupContainerFolder(const char* group) {
    const std::string folder = ApplicationSupportFolder();
    return folder.empty() ? folder : FolderFollowedBy(folder, std::string("/").append(group));
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
    const std::string home = user.empty() ? HomeFolder() : HomeFolderOf(user);
    const std::string rest = end == std::string::npos ? std::string() : path.substr(end);
    if (home.empty()) {
        return path;
    }
    const std::string expanded = FolderFollowedBy(home, rest);
    return std::string(WithoutTrailingSlashes(expanded));
}

}  // namespace platform
