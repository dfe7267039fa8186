// The folders for the data of the application and for temporary files.
#include <exception>
#include <string>
#include <utility>

#include "CostCountCommon/include/MacUtility.h"
#include "CostCountCommon/src/Log.h"
#include "CostCountCommon/src/platform/Platform.h"
#include "compatible/Utf8.h"

namespace {

constexpr char LOG_SOURCE[] = "MacUtility";

constexpr char MACHINE_DATA_FOLDER[] = "/Library/Application Support";
constexpr char APPLICATION_GROUP[] = "K7Q3MZP2WD.RX.qvtrel";
// Of the group container; the same words as in the machine-wide folder by chance only.
constexpr char GROUP_SUPPORT_FOLDER[] = "/Library/Application Support";

bool IsText(const std::string& path) {
    return !path.empty() && IsUtf8(path);
}

bool StoreGroupFolder(const char* below, std::string* path) try {
    if (path == nullptr) {
        return false;
    }
    std::string folder = platform::GroupContainerFolder(APPLICATION_GROUP);
    if (!IsText(folder)) {
        return false;
    }
    *path = std::move(folder.append(below));
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

}  // namespace

bool GetApplicationDataPath(std::string* path) try {
    if (path == nullptr) {
        return false;
    }
    *path = MACHINE_DATA_FOLDER;
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

bool GetApplicationDataLocalPath(std::string* path) try {
    if (path == nullptr) {
        LibLogger().WriteLog(LOG_SOURCE, 114, 'e', 0, "invalid parameter.");
        return false;
    }
    std::string folder = platform::ApplicationSupportFolder();
    if (folder.empty()) {
        LibLogger().WriteLog(LOG_SOURCE, 135, 'e', 0, "URLsForDirectory:inDomains: failed.");
        return false;
    }
    if (!IsUtf8(folder)) {
        LibLogger().WriteLog(LOG_SOURCE, 130, 'e', 0, "UTF8String failed.");
        return false;
    }
    *path = std::move(folder);
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

bool GetApplicationDataGroupContainerPath(std::string* path) {
    return StoreGroupFolder("", path);
}

bool GetApplicationDataGroupContainerAppSupportPath(std::string* path) {
    return StoreGroupFolder(GROUP_SUPPORT_FOLDER, path);
}

bool GetTempPath(std::string* path) try {
    if (path == nullptr) {
        LibLogger().WriteLog(LOG_SOURCE, 212, 'e', 0, "invalid parameter.");
        return false;
    }
    std::string folder = platform::TemporaryFolder();
    if (!IsText(folder)) {
        LibLogger().WriteLog(LOG_SOURCE, 224, 'e', 0, "failed to get TemporaryDirectory path.");
        return false;
    }
    *path = std::move(folder);
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

void PathToPathByExpandingTildePath(const char* path, std::string* expanded) try {
    if (path == nullptr || expanded == nullptr) {
        return;
    }
    std::string result = platform::ExpandTilde(path);
    if (IsUtf8(result)) {
        *expanded = std::move(result);
    }
} catch (const std::exception&) {
    // Out of memory: nothing is stored.
}
