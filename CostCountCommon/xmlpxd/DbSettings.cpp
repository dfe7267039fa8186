// The job-log database's setting file. Its external interface is the part of that name of
// CCommonXmlPxd.
#include <exception>
#include <memory>
#include <new>
#include <utility>

#include "CostCountCommon/CommonUtility.h"
#include "CostCountCommon/CommonXMLPxd.h"
#include "CostCountCommon/src/Log.h"
#include "CostCountCommon/xmlpxd/OpenedXml.h"
#include "CostCountCommon/xmlpxd/Print.h"
#include "CostCountCommon/xmlpxd/XmlNode.h"

namespace {

using xmlpxd::CurrentXml;
using xmlpxd::OpenedXml;
using xmlpxd::Print;
using xmlpxd::XmlNode;
using xmlpxd::XmlSource;

constexpr const char* SOURCE = "CommonXmlPxd";

constexpr unsigned int NOT_CREATED = 0xFFFFFFFF;

constexpr const char* TEMPLATE = "/xmls/DBSettingBase.xml";

}  // namespace

unsigned int CCommonXmlPxd::CreateDBSettingFile(const std::string& folder,
                                                const std::string& dbPath,
                                                const std::string& dbVolume) try {
    if (m_FunctionsXmlPxd == nullptr) {
        return NOT_CREATED;
    }
    if (dbPath.empty() || dbVolume.empty()) {
        Print("CCommonXmlPxd::CreateDBSettingFile() ERROR: PARAMETER");
        return NOT_CREATED;
    }
    const CurrentXml file(*this, TEMPLATE, XmlSource::TEMPLATE);
    if (file.Root() == nullptr) {
        Print("CCommonXmlPxd::CreateDBSettingFile() ERROR: OpenXml() PATH=%s\n", TEMPLATE);
        return NOT_CREATED;
    }
    if (!SetElementBySettingValue(file.Root(), XMLTAG_DB_JOBLOGDB_PATH, dbPath)) {
        Print(
            "CCommonXmlPxd::CreateDBSettingFile() ERROR: SetElementBySettingValue(joblogdb_path)");
        return NOT_CREATED;
    }
    if (!SetElementBySettingValue(file.Root(), XMLTAG_DB_JOBLOGDB_VOLUME, dbVolume)) {
        Print(
            "CCommonXmlPxd::CreateDBSettingFile() ERROR: "
            "SetElementBySettingValue(joblogdb_volume)");
        return NOT_CREATED;
    }
    const unsigned int err = xmlpxd::Save(*m_FunctionsXmlPxd, m_document,
                                          folder + CCommonUtility::GetDBSettingsFileName());
    return err == XMLPXD_OK ? 0 : NOT_CREATED;
} catch (const std::exception&) {
    return NOT_CREATED;  // out of memory
}

bool CCommonXmlPxd::GetDBSetting(const std::string& folder, std::string* dbPath,
                                 std::string* dbVolume) try {
    if (m_FunctionsXmlPxd == nullptr) {
        return false;
    }
    if (dbPath == nullptr || dbVolume == nullptr) {
        Print("CCommonXmlPxd::GetDBSetting() ERROR: PARAMETER");
        return false;
    }
    const OpenedXml file(*this, folder + CCommonUtility::GetDBSettingsFileName());
    if (file.Root() == nullptr) {
        Print("CCommonXmlPxd::GetDBSetting() ERROR: OpenXml() PATH=%s\n",
              CCommonUtility::GetDBSettingsFileName().c_str());
        return false;
    }
    std::string path;
    std::string volume;
    unsigned int err = XMLPXD_OK;
    if (!GetElementValueWithSearch(file.Root(), XMLTAG_DB_JOBLOGDB_PATH, false, &path, &err) ||
        !GetElementValueWithSearch(file.Root(), XMLTAG_DB_JOBLOGDB_VOLUME, false, &volume, &err)) {
        return false;
    }
    dbPath->swap(path);
    dbVolume->swap(volume);
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

bool CCommonXmlPxd::GetElementValueDBSettingFile(unsigned int tagId, std::string* value) try {
    std::string path;
    if (value == nullptr || !GetDBSettingFilePath(&path)) {
        return false;
    }
    const OpenedXml file(*this, path);
    if (file.Root() == nullptr) {
        Print("OpenXml() failed. dbSttingFile[%s]", path.c_str());
        return false;
    }
    unsigned int err = XMLPXD_OK;
    const XmlNode element(*m_FunctionsXmlPxd, SearchParentElement(file.Root(), tagId, &err));
    if (!element) {
        Print("SearchParentElement() failed.");
        return false;
    }
    const std::unique_ptr<CCommonXmlPxdElementData> data(new (std::nothrow)
                                                             CCommonXmlPxdElementData);
    if (data == nullptr) {
        // Where memory ran out is logged, wherever in the XML layer it did.
        LibLogger().WriteLog(SOURCE, __LINE__, 'e', 0, "new CCommonXmlPxdElementData failed.");
        return false;
    }
    if (!GetElementData(element.Get(), data.get(), &err)) {
        Print("GetElementData() failed.");
        return false;
    }
    value->swap(data->m_Values.front());
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

bool CCommonXmlPxd::SetElementByDBSettingValue(void* start, unsigned int targetTagId,
                                               unsigned int settingTagId) try {
    if (m_FunctionsXmlPxd == nullptr ||
        (settingTagId != XMLTAG_DB_JOBLOGDB_PATH && settingTagId != XMLTAG_DB_JOBLOGDB_VOLUME)) {
        return false;
    }
    std::string value;
    if (!GetElementValueDBSettingFile(settingTagId, &value)) {
        LibLogger().WriteLog(SOURCE, __LINE__, 'e', 0, "GetElementValueDBSettingFile() failed.");
        return false;
    }
    return SetElementBySettingValue(start, targetTagId, std::move(value));
} catch (const std::exception&) {
    return false;  // out of memory
}
