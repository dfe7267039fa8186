// The system setting files for an operation that needs several settings: the user's copy, which
// overrides setting by setting, and the installed one. Each is opened when it is first needed.
#pragma once

#include <optional>
#include <string>

#include "CostCountCommon/xmlpxd/OpenedXml.h"

namespace xmlpxd {

// For a bound object.
class SystemSettingFiles {
public:
    explicit SystemSettingFiles(CCommonXmlPxd& xml) : m_xml(xml) {}

    bool Read(unsigned int tagId, std::string* value);
    // Copies a setting into the first element of `targetTagId` in the walk from `start`, as
    // CCommonXmlPxd::SetElementBySysComSettingValue does.
    bool Copy(void* start, unsigned int targetTagId, unsigned int settingTagId);

private:
    void* UserCopy();
    void* Installed();

    CCommonXmlPxd& m_xml;
    std::optional<OpenedXml> m_userCopy;
    std::optional<OpenedXml> m_installed;
};

}  // namespace xmlpxd
