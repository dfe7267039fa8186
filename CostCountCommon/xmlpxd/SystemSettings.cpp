// The system setting file. Its external interface is the part of that name of CCommonXmlPxd, and
// GetSystemSettingFileFullPath.
#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

#include "CostCountCommon/CommonUtility.h"
#include "CostCountCommon/CommonXMLPxd.h"
#include "CostCountCommon/include/MacUtility.h"
#include "CostCountCommon/src/Log.h"
#include "CostCountCommon/xmlpxd/NumberOf.h"
#include "CostCountCommon/xmlpxd/SystemSettings.h"
#include "CostCountCommon/xmlpxd/XmlNode.h"

namespace {

using xmlpxd::NumberOf;

constexpr const char* SOURCE = "CommonXmlPxd";

constexpr const char* DETCH_PIPE = "bnt2detch";

// Settings that are paths within a data folder.
struct PathSetting {
    unsigned int tagId;
    MANAGEMENT_DATA_TYPE kind;
};

constexpr PathSetting PRINTER_LIST = {XMLTAG_SYS_PRINTERLISTPATH, MANAGEMENT_DATA_PRINTER_LIST};
constexpr PathSetting DB_SETTING = {XMLTAG_SYS_JOBLOGDBSETTINGPATH, MANAGEMENT_DATA_DB_SETTING};
constexpr PathSetting ERR_LOG = {XMLTAG_SYS_GETERRJOBLOGPATH, MANAGEMENT_DATA_LOG};
constexpr PathSetting SCHEDULE_SETTING = {XMLTAG_SYS_SCHEDULESETTINGPATH,
                                          MANAGEMENT_DATA_SCHEDULED_EXPORT};
constexpr PathSetting SCHEDULED_EXPORT_LOG = {XMLTAG_SYS_SCHEDULEDEXPORTLOGPATH,
                                              MANAGEMENT_DATA_SCHEDULED_EXPORT};

// Those that are made full paths when they are copied into a message. The other paths are not: who
// reads those elements joins them to a folder itself.
constexpr PathSetting FULL_IN_MESSAGES[] = {
    DB_SETTING,
    {XMLTAG_SYS_ACTIONLOGPATH, MANAGEMENT_DATA_LOG},
    {XMLTAG_SYS_ACTIONLOGPATHREGIDENT, MANAGEMENT_DATA_LOG},
    ERR_LOG,
    {XMLTAG_SYS_LASTGETLOGPATH, MANAGEMENT_DATA_LAST_GET_LOG},
};

// What may be copied into a message: all of a range but the number that no setting has.
constexpr unsigned int FIRST_COPIED = XMLTAG_SYS_BNTPIPENAMEAPPIN;
constexpr unsigned int LAST_COPIED = XMLTAG_SYS_SEARCHTTL;
constexpr unsigned int NO_SETTING = 25;

// In the order of the outputs of GetRetryData.
constexpr unsigned int RETRY_SETTINGS[] = {
    XMLTAG_SYS_USBRETRYCOUNT,      XMLTAG_SYS_USBRETRYINTERVAL, XMLTAG_SYS_COMMURETRYCOUNT,
    XMLTAG_SYS_COMMURETRYINTERVAL, XMLTAG_SYS_CHECKCMSINTERVAL, XMLTAG_SYS_CHECKJOBLOGERRINTERVAL,
    XMLTAG_SYS_CANCELINTERVAL,     XMLTAG_SYS_SEARCHTIMEOUT,    XMLTAG_SYS_SEARCHTTL,
};

bool LogFailure(unsigned int line, const char* message) {
    LibLogger().WriteLog(SOURCE, line, 'e', 0, "%s", message);
    return false;
}

// The full path of a setting; silent.
bool ReadPath(CCommonXmlPxd& xml, const PathSetting& setting, std::string* path) try {
    std::string relative;
    std::string folder;
    if (path == nullptr || !xml.GetElementValueSysCommSettingFile(setting.tagId, &relative) ||
        !CCommonUtility::GetDataFolderBase(setting.kind, &folder)) {
        return false;
    }
    path->swap(folder.append(relative));
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

// The same for the files of the scheduled export; what goes wrong is logged.
bool ReadScheduledExportPath(CCommonXmlPxd& xml, const PathSetting& setting,
                             std::string* path) try {
    if (path == nullptr) {
        return LogFailure(__LINE__, "invalid parameter.");
    }
    std::string folder;
    if (!CCommonUtility::GetDataFolderBase(setting.kind, &folder)) {
        return LogFailure(__LINE__, "CCommonUtility::GetDataFolderBase() failed.");
    }
    std::string relative;
    if (!xml.GetElementValueSysCommSettingFile(setting.tagId, &relative)) {
        return LogFailure(__LINE__, "GetElementValueSysCommSettingFile() failed.");
    }
    path->swap(folder.append(relative));
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

}  // namespace

namespace xmlpxd {

void* SystemSettingFiles::UserCopy() {
    std::string path;
    if (!m_userCopy && CCommonUtility::GetDataFolderBase(MANAGEMENT_DATA_SYSTEM_SETTING, &path)) {
        m_userCopy.emplace(m_xml, path.append("/").append(m_xml.m_systemSettingFile));
    }
    return m_userCopy ? m_userCopy->Root() : nullptr;
}

void* SystemSettingFiles::Installed() {
    std::string path;
    if (!m_installed && m_xml.GetSystemSettingFileFullPath(&path)) {
        m_installed.emplace(m_xml, path);
    }
    return m_installed ? m_installed->Root() : nullptr;
}

bool SystemSettingFiles::Read(unsigned int tagId, std::string* value) {
    unsigned int err = XMLPXD_OK;
    void* userCopy = UserCopy();
    if (userCopy != nullptr &&
        m_xml.GetElementValueWithSearch(userCopy, static_cast<int>(tagId), false, value, &err)) {
        return true;
    }
    const XmlNode element(*m_xml.m_FunctionsXmlPxd, m_xml.SearchElement(Installed(), tagId, &err));
    CCommonXmlPxdElementData data;
    if (!m_xml.GetElementData(element.Get(), &data, &err)) {
        return false;
    }
    value->swap(data.m_Values.front());
    return true;
}

bool SystemSettingFiles::Copy(void* start, unsigned int targetTagId, unsigned int settingTagId) {
    if (settingTagId < FIRST_COPIED || settingTagId > LAST_COPIED || settingTagId == NO_SETTING) {
        return false;
    }
    std::string value;
    if (!Read(settingTagId, &value)) {
        return LogFailure(__LINE__, "GetElementValueSysCommSettingFile() failed.");
    }
    const auto* const full =
        std::find_if(std::begin(FULL_IN_MESSAGES), std::end(FULL_IN_MESSAGES),
                     [&](const PathSetting& setting) { return setting.tagId == settingTagId; });
    if (full != std::end(FULL_IN_MESSAGES)) {
        std::string folder;
        if (!CCommonUtility::GetDataFolderBase(full->kind, &folder)) {
            return LogFailure(__LINE__, "CCommonUtility::GetDataFolderBase() failed.");
        }
        value.insert(0, folder);
    }
    return m_xml.SetElementBySettingValue(start, targetTagId, std::move(value));
}

}  // namespace xmlpxd

bool CCommonXmlPxd::GetSystemSettingFileFullPath(std::string* path) try {
    std::string folder;
    if (m_FunctionsXmlPxd == nullptr || path == nullptr || !GetResourcesPath(&folder) ||
        folder.empty()) {
        return false;
    }
    path->swap(folder.append("/").append(m_systemSettingFile));
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

bool CCommonXmlPxd::GetElementValueSysCommSettingFile(unsigned int tagId, std::string* value) try {
    if (m_FunctionsXmlPxd == nullptr || value == nullptr) {
        return false;
    }
    return xmlpxd::SystemSettingFiles(*this).Read(tagId, value);
} catch (const std::exception&) {
    return false;  // out of memory
}

bool CCommonXmlPxd::GetServiceName(std::string* value) {
    return GetElementValueSysCommSettingFile(XMLTAG_SYS_CMSERVICENAME, value);
}

bool CCommonXmlPxd::GetBaseTick(std::string* value) {
    return GetElementValueSysCommSettingFile(XMLTAG_SYS_BASECYCLE, value);
}

bool CCommonXmlPxd::GetErrLogLevel(std::string* value) {
    return GetElementValueSysCommSettingFile(XMLTAG_SYS_GETERRJOBLOGLEVEL, value);
}

bool CCommonXmlPxd::GetBNTPipeName(std::string* inName, std::string* outName,
                                   bool applicationSide) try {
    if (m_FunctionsXmlPxd == nullptr) {
        return false;
    }
    if (inName == nullptr || outName == nullptr) {
        return LogFailure(__LINE__, "invalid parameter.");
    }
    std::string in;
    std::string out;
    if (!GetElementValueSysCommSettingFile(
            applicationSide ? XMLTAG_SYS_BNTPIPENAMEAPPIN : XMLTAG_SYS_BNTPIPENAMECMSIN, &in) ||
        !GetElementValueSysCommSettingFile(
            applicationSide ? XMLTAG_SYS_BNTPIPENAMEAPPOUT : XMLTAG_SYS_BNTPIPENAMECMSOUT, &out)) {
        return false;
    }
    if (!CCommonUtility::CreatePipeName(in, &in) || !CCommonUtility::CreatePipeName(out, &out)) {
        return LogFailure(__LINE__, "CreatePipeName() failed.");
    }
    inName->swap(in);
    outName->swap(out);
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

bool CCommonXmlPxd::GetDetchPipeName(std::string* name) try {
    return m_FunctionsXmlPxd != nullptr && CCommonUtility::CreatePipeName(DETCH_PIPE, name);
} catch (const std::exception&) {
    return false;  // out of memory
}

bool CCommonXmlPxd::GetPrinterListFilePath(std::string* path) {
    return ReadPath(*this, PRINTER_LIST, path);
}

bool CCommonXmlPxd::GetDBSettingFilePath(std::string* path) {
    return ReadPath(*this, DB_SETTING, path);
}

bool CCommonXmlPxd::GetErrLogFilePath(std::string* path) {
    return ReadPath(*this, ERR_LOG, path);
}

bool CCommonXmlPxd::GetScheduledExportSettingFilePath(std::string* path) {
    return m_FunctionsXmlPxd != nullptr && ReadScheduledExportPath(*this, SCHEDULE_SETTING, path);
}

bool CCommonXmlPxd::GetScheduledExportLogFilePath(std::string* path) {
    return m_FunctionsXmlPxd != nullptr &&
           ReadScheduledExportPath(*this, SCHEDULED_EXPORT_LOG, path);
}

bool CCommonXmlPxd::GetRetryData(int* usbRetryCount, int* usbRetryInterval, int* commuRetryCount,
                                 int* commuRetryInterval, int* checkCmsInterval,
                                 int* checkJobLogErrInterval, int* cancelInterval,
                                 int* searchTimeOut, int* searchTtl) {
    int* const outputs[] = {usbRetryCount,      usbRetryInterval, commuRetryCount,
                            commuRetryInterval, checkCmsInterval, checkJobLogErrInterval,
                            cancelInterval,     searchTimeOut,    searchTtl};
    static_assert(std::size(outputs) == std::size(RETRY_SETTINGS));
    bool isRead = false;
    std::string value;
    for (size_t i = 0; i < std::size(outputs); ++i) {
        if (outputs[i] == nullptr) {
            continue;
        }
        isRead = GetElementValueSysCommSettingFile(RETRY_SETTINGS[i], &value);
        if (isRead) {
            *outputs[i] = NumberOf(value);
        }
    }
    return isRead;
}

bool CCommonXmlPxd::SetElementBySysComSettingValue(void* start, unsigned int targetTagId,
                                                   unsigned int settingTagId) try {
    return m_FunctionsXmlPxd != nullptr &&
           xmlpxd::SystemSettingFiles(*this).Copy(start, targetTagId, settingTagId);
} catch (const std::exception&) {
    return false;  // out of memory
}
