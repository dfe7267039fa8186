// The job-log database's settings for callers that have no CCommonXmlPxd at hand. Its external
// interface is the part of that name of CCommonUtility but for the names, which the XML layer below
// uses too.
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <exception>
#include <memory>
#include <new>

#include "CostCountCommon/CommonUtility.h"
#include "CostCountCommon/CommonXMLPxd.h"
#include "CostCountCommon/NamedLock.h"
#include "CostCountCommon/src/PathBuffer.h"
#include "CostCountCommon/src/UtilityLog.h"
#include "compatible/osFree.h"

namespace {

using utility::LogError;

constexpr unsigned int NOT_CREATED = 0xFFFFFFFF;

// Final: the class has no virtual destructor, so only what cannot be derived from may be deleted.
class OwnedXml final : public CCommonXmlPxd {};

// A new object bound to the parser plug-in, or null.
std::unique_ptr<OwnedXml> BoundXml() {
    std::unique_ptr<OwnedXml> xml(new (std::nothrow) OwnedXml);
    if (xml == nullptr) {
        LogError(__LINE__, "failed to allocate CCommonXmlPxd.");
        return nullptr;
    }
    // What there is no path for is empty, and the binding then fails.
    if (!xml->InitializeXmlPxd(CCommonUtility::GetLibPath(CCommonUtility::PATH_SYSTEM_SETTING),
                               CCommonUtility::GetLibPath(CCommonUtility::PATH_INSTALL),
                               CCommonUtility::GetLibPath(CCommonUtility::PATH_XML_PARSER),
                               false)) {
        LogError(__LINE__, "pCmXmlPxd Initialization failed.");
        return nullptr;
    }
    return xml;
}

// The template may be installed read-only, and a copy is as the template is.
bool MakeWritable(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0 ||
        chmod(path.c_str(), (status.st_mode & 07777U) | S_IWUSR) != 0) {
        LogError(__LINE__, "chmod() failed.", errno);
        return false;
    }
    return true;
}

}  // namespace

bool CCommonUtility::GetDBSetting(const std::string& folder, std::string* dbPath,
                                  std::string* dbVolume) try {
    if (dbPath == nullptr || dbVolume == nullptr) {
        LogError(__LINE__, "invalid parameter.");
        return false;
    }
    const std::unique_ptr<OwnedXml> xml = BoundXml();
    if (xml == nullptr) {
        return false;
    }
    if (!xml->GetDBSetting(folder, dbPath, dbVolume)) {
        LogError(__LINE__, "failed to get joblogDB settings.");
        return false;
    }
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

unsigned int CCommonUtility::CreateDBSettingFile(const std::string& folder,
                                                 const std::string& dbPath,
                                                 const std::string& dbVolume) try {
    const std::unique_ptr<OwnedXml> xml = BoundXml();
    if (xml == nullptr) {
        return NOT_CREATED;
    }
    const unsigned int result = xml->CreateDBSettingFile(folder, dbPath, dbVolume);
    if (result != 0) {
        LogError(__LINE__, "failed to create joblogDB settings.");
    }
    return result;
} catch (const std::exception&) {
    return NOT_CREATED;  // out of memory
}

bool CCommonUtility::CheckDBSettingFile(std::string folder) try {
    if (folder.empty() && !GetDataFolderBase(MANAGEMENT_DATA_DB_SETTING, &folder)) {
        LogError(__LINE__, "GetDataFolderBase() failed.");
        return false;
    }
    if (!CheckFolderExists(folder)) {
        LogError(__LINE__, "CheckFolderExists() failed.");
        return false;
    }
    const std::string file = folder + GetDBSettingsFileName();
    if (CheckFileExists(file)) {
        return true;
    }
    if (!CopyFile(GetDefaultDBSettingsFilePath().c_str(), file.c_str(), 1)) {
        if (CheckFileExists(file)) {
            return true;  // another program was first, and initialises it
        }
        LogError(__LINE__, "CopyFile() failed.");
        return false;
    }
    if (!MakeWritable(file) || !initializeDBPath(folder)) {
        if (std::remove(file.c_str()) != 0) {
            LogError(__LINE__, "remove() failed.", errno);
        }
        return false;
    }
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

bool CCommonUtility::initializeDBPath(const std::string& folder) try {
    std::string dbPath;
    std::string dbVolume;
    if (!GetDBSetting(folder, &dbPath, &dbVolume)) {
        LogError(__LINE__, "GetDBSetting() failed.");
        return false;
    }
    if (!dbPath.empty()) {
        return true;
    }
    std::string base;
    if (!GetDataFolderBase(MANAGEMENT_DATA_JOBLOG_DB, &base)) {
        LogError(__LINE__, "failed to get joblogDB base path.");
        return false;
    }
    PathBuffer path;
    if (path.Assign(base) != 0 || !path.Append("joblog")) {
        LogError(__LINE__, "PathAppend failed.");
        return false;
    }
    return CreateDBSettingFile(folder, path.Text(), "0") == 0;
} catch (const std::exception&) {
    return false;  // out of memory
}

std::string CCommonUtility::GetDBMoveLockName() try {
    return "K7Q3MZP2WD.RX.qvtrel/DBMOVE";
} catch (const std::exception&) {
    return {};  // out of memory
}

bool CCommonUtility::IsJobLogDBMoving() try {
    return CNamedLock::IsLocked(GetDBMoveLockName().c_str());
} catch (const std::exception&) {
    return false;  // out of memory
}
