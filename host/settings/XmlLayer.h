// The library's XML layer for the program's commands.
#pragma once

#include <map>
#include <string>

#include "CostCountCommon/CommonXMLPxd.h"
#include "CostCountCommon/xmlpxd/XmlNode.h"

namespace tallyquist {

// Owners of the handles that it gives.
using xmlpxd::XmlDocument;
using xmlpxd::XmlNode;

class XmlLayer final : public CCommonXmlPxd {
public:
    // Has the catalogue of names, nothing more.
    XmlLayer();

    // Loads the parser plug-in. To be called once. Throws CommandError.
    void Bind();

    const std::map<unsigned int, std::string>& Names() const { return m_XmlTagIDs; }

    // After Bind.

    // The entries of the parser plug-in.
    const XMLPXD_FUNCLIST& Parser() const { return *m_FunctionsXmlPxd; }
    // Throws CommandError.
    std::string NameOf(const XmlNode& element) const;
};

// Throws CommandError for an error of the parser plug-in that no file or value explains.
void RequireXml(unsigned int err);

}  // namespace tallyquist
