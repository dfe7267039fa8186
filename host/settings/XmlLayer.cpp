#include "host/settings/XmlLayer.h"

#include "CostCountCommon/CommonUtility.h"
#include "host/common/Errors.h"
#include "host/common/Printable.h"

namespace tallyquist {

XmlLayer::XmlLayer() {
    CreateMapSystemCommonSettingTags();
}

void XmlLayer::Bind() {
    const std::string parser = CCommonUtility::GetLibPath(CCommonUtility::PATH_XML_PARSER);
    if (!InitializeXmlPxd(CCommonUtility::GetLibPath(CCommonUtility::PATH_SYSTEM_SETTING),
                          CCommonUtility::GetLibPath(CCommonUtility::PATH_INSTALL), parser,
                          false)) {
        throw CommandError("cannot load the XML parser plug-in " + Visible(parser));
    }
    // Entries are looked up in a fixed order up to the first that is missing, and this one is last.
    if (m_FunctionsXmlPxd == nullptr || m_FunctionsXmlPxd->RemoveElement == nullptr) {
        throw CommandError("the XML parser plug-in lacks functions: " + Visible(parser));
    }
}

std::string XmlLayer::NameOf(const XmlNode& element) const {
    std::string name;
    unsigned int err = XMLPXD_OK;
    xmlpxd::ReadText(Parser(), &XMLPXD_FUNCLIST::GetElementName, element.Get(), &name, &err);
    RequireXml(err);
    return name;
}

void RequireXml(unsigned int err) {
    if (err != XMLPXD_OK) {
        throw CommandError("the XML parser plug-in failed with error " + std::to_string(err));
    }
}

}  // namespace tallyquist
