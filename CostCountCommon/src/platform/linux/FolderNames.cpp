#include "CostCountCommon/src/platform/linux/FolderNames.h"

#include <dirent.h>

#include <cerrno>
#include <memory>
#include <string_view>

#include "CostCountCommon/src/CancellationOff.h"

namespace platform {
namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

}  // namespace

bool FolderNames(const std::string& folder, std::vector<std::string>* names) {
    const CancellationOff whole;
    const std::unique_ptr<DIR, CloseFolder> opened(opendir(folder.c_str()));
    if (opened == nullptr) {
        return false;
    }
    std::vector<std::string> found;
    errno = 0;
    while (const dirent* entry = readdir(opened.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") {
            found.emplace_back(name);
        }
        errno = 0;
    }
    if (errno != 0) {
        return false;
    }
    names->swap(found);
    return true;
}

}  // namespace platform
