// The plug-in folder and what lies in it, as URLs.
#include <exception>
#include <string>

#include "CostCountCommon/include/MacUtility.h"
#include "CostCountCommon/src/BundleFolders.h"
#include "CostCountCommon/src/platform/Platform.h"
#include "compatible/Utf8.h"

CFURLRef CreatePluginFolderURLRef() try {
    const std::string folder = bundle::PluginFolder();
    return folder.empty() ? nullptr : platform::CreateFileUrl(folder, true);
} catch (const std::exception&) {
    return nullptr;  // out of memory
}

CFURLRef CreatePluginURLRef(const char* fileName) try {
    if (fileName == nullptr || *fileName == '\0' || !IsUtf8(fileName)) {
        return nullptr;
    }
    const std::string folder = bundle::PluginFolder();
    return folder.empty() ? nullptr
                          : platform::CreateFileUrl(bundle::Joined(folder, fileName), false);
} catch (const std::exception&) {
    return nullptr;  // out of memory
}
