// Usage: location_probe APPLICATION_TYPE WHAT ... Prints a line per key of GetPluginFilePath, name
// of another function, or text:KEY for a localised text: the result and the output, which is
// "unchanged" when the library leaves it alone.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "CostCountCommon/include/MacUtility.h"

namespace {

bool StorePath(CFURLRef url, std::string* path) {
    if (url == nullptr) {
        return false;
    }
    unsigned char buffer[4096] = {};
    const bool fits = CFURLGetFileSystemRepresentation(url, 1, buffer, sizeof buffer) != 0;
    CFRelease(url);
    path->assign(reinterpret_cast<const char*>(buffer));
    return fits;
}

bool Find(const std::string& what, std::string* path) {
    if (what == "GetResourcesPath") {
        return GetResourcesPath(path);
    }
    if (what == "GetPluginResourcesPath") {
        *path = GetPluginResourcesPath();
        return !path->empty();
    }
    if (what == "CreatePluginURLRef") {
        return StorePath(CreatePluginURLRef("name"), path);
    }
    if (what == "CreatePluginFolderURLRef") {
        return StorePath(CreatePluginFolderURLRef(), path);
    }
    if (what == "localizationsCount") {
        *path = std::to_string(localizationsCount());
        return true;
    }
    if (what.starts_with("text:")) {
        return LoadResourceString(what.c_str() + 5, path) == -1;
    }
    return GetPluginFilePath(what.c_str(), path);
}

}  // namespace

int main(int argc, char** argv) {
    SetAppType(static_cast<ApplicationType>(std::atoi(argv[1])));
    for (int i = 2; i < argc; ++i) {
        std::string path = "unchanged";
        const bool found = Find(argv[i], &path);
        std::printf("%d %s\n", found ? 1 : 0, path.c_str());
    }
    return 0;
}
