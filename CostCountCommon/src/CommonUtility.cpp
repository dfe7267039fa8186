// Folders, names of pipes, temporary files and the job-log database's setting file, and the logs of
// connections. Its external interface is the part "Folders and names" of CCommonUtility, and the
// names of the setting file.
#include "CostCountCommon/CommonUtility.h"

#include <cerrno>
#include <cstdio>
#include <exception>
#include <iterator>

#include "CostCountCommon/include/MacUtility.h"
#include "CostCountCommon/src/BundleFolders.h"
#include "CostCountCommon/src/PathBuffer.h"
#include "CostCountCommon/src/UtilityLog.h"

namespace {

using utility::LogError;

constexpr const char* PRODUCT_FOLDER = "/Norvane/Tallyquist";

struct DataFolder {
    bool (*base)(std::string*);
    const char* below;
    const char* failure;
};

constexpr DataFolder GROUP = {GetApplicationDataGroupContainerAppSupportPath, PRODUCT_FOLDER,
                              "GetApplicationDataGroupContainerAppSupportPath() failed."};
constexpr DataFolder LOCAL = {GetApplicationDataLocalPath, PRODUCT_FOLDER,
                              "GetApplicationDataLocalPath() failed."};
constexpr DataFolder MACHINE = {GetApplicationDataPath, PRODUCT_FOLDER,
                                "GetApplicationDataPath() failed."};
constexpr DataFolder CONTAINER = {GetApplicationDataGroupContainerPath, "",
                                  "GetApplicationDataGroupContainerPath() failed."};

// By MANAGEMENT_DATA_TYPE.
constexpr DataFolder DATA_FOLDERS[] = {GROUP, GROUP, LOCAL, LOCAL,   GROUP, LOCAL,    GROUP,
                                       GROUP, GROUP, GROUP, MACHINE, GROUP, CONTAINER};
static_assert(std::size(DATA_FOLDERS) == MANAGEMENT_DATA_PIPE + 1);

// Printer identifiers come from outside: none may lead to another folder.
bool IsFileName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
}

}  // namespace

bool CCommonUtility::GetDataFolderBase(MANAGEMENT_DATA_TYPE kind, std::string* folder) try {
    if (folder == nullptr) {
        LogError(__LINE__, "invalid parameter.");
        return false;
    }
    if (kind >= std::size(DATA_FOLDERS)) {
        LibLogger().WriteLog(utility::SOURCE, __LINE__, 'e', 0, "receive illegal type. type=%u",
                             kind);
        return false;
    }
    const DataFolder& data = DATA_FOLDERS[kind];
    std::string base;
    if (!data.base(&base)) {
        LogError(__LINE__, data.failure);
        return false;
    }
    folder->swap(base.append(data.below));
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

bool CCommonUtility::CreatePipeName(const std::string& base, std::string* pipeName) try {
    if (pipeName == nullptr) {
        LogError(__LINE__, "invalid parameter.");
        return false;
    }
    std::string folder;
    if (!GetDataFolderBase(MANAGEMENT_DATA_PIPE, &folder)) {
        LogError(__LINE__, "GetDataFolderBase() failed.");
        return false;
    }
    PathBuffer path;
    if (const int error = path.Assign(folder)) {
        LogError(__LINE__, "U_STRCPY_S() failed.", error);
        return false;
    }
    if (!path.Append("pipe") || (!base.empty() && !path.Append(base))) {
        LogError(__LINE__, "PathAppend() failed.");
        return false;
    }
    *pipeName = path.Text();
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

bool CCommonUtility::GetTempFolderPath(std::string* folder) try {
    if (folder == nullptr) {
        LogError(__LINE__, "invalid parameter.");
        return false;
    }
    std::string temporary;
    if (!GetTempPath(&temporary)) {
        LogError(__LINE__, "GetTempPath() failed.");
        return false;
    }
    *folder = bundle::Joined(temporary, "Norvane");
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

bool CCommonUtility::GetTempFileName(const std::string& base, int number,
                                     const std::string& extension, std::string* name) try {
    if (name == nullptr) {
        LogError(__LINE__, "invalid parameter.");
        return false;
    }
    std::string joined = base;
    joined.append(".").append(std::to_string(number)).append(".").append(extension);
    name->swap(joined);
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

bool CCommonUtility::GetTempFilePath(const std::string& base, int number,
                                     const std::string& extension, std::string* path) try {
    if (path == nullptr) {
        LogError(__LINE__, "invalid parameter.");
        return false;
    }
    std::string folder;
    std::string name;
    if (!GetTempFolderPath(&folder) || !GetTempFileName(base, number, extension, &name)) {
        return false;
    }
    *path = bundle::Joined(folder, name);
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

bool CCommonUtility::DeleteConnectionJobLog(const char* printerId) try {
    if (printerId == nullptr) {
        LogError(__LINE__, "pPrinterId is NULL.");
        return false;
    }
    std::string path;
    if (!GetDataFolderBase(MANAGEMENT_DATA_LAST_GET_LOG, &path)) {
        LogError(__LINE__, "GetDataFolderBase() failed.");
        return false;
    }
    std::string name = printerId;
    std::erase(name, ':');
    path.append("/logs/join/").append(name);
    errno = EINVAL;
    if (!IsFileName(name) || (std::remove(path.c_str()) != 0 && errno != ENOENT)) {
        LibLogger().WriteLog(utility::SOURCE, __LINE__, 'e', static_cast<unsigned int>(errno),
                             "_tremove() failed. connectJobLogPath=%s", path.c_str());
        return false;
    }
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

std::string CCommonUtility::GetDBSettingsFileName() {
    return "/db_settings";
}

std::string CCommonUtility::GetDefaultDBSettingsFilePath() try {
    std::string path = GetPluginResourcesPath();
    if (path.empty()) {
        LogError(__LINE__, "GetPluginResourcesPath() failed.");
        return {};
    }
    return path.append("/xmls/db_settings");
} catch (const std::exception&) {
    return {};  // out of memory
}
