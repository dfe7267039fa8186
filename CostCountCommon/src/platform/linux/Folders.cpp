// Folders of the user after the XDG base directory rules.
#include "CostCountCommon/src/platform/Platform.h"
#include "CostCountCommon/src/platform/linux/HomeFolder.h"

namespace platform {
namespace {

std::string DataHomeFolder() {
    return BaseFolder("XDG_DATA_HOME", ".local/share");
}

}  // namespace

std::string GroupContainerFolder(const char* group) {
    const std::string folder = DataHomeFolder();
    return folder.empty() ? folder : folder + "/" + group;
}

}  // namespace platform
