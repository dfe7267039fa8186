// XML files of a known kind.
#pragma once

#include <optional>
#include <string>

#include "CostCountCommon/xmlpxd/XmlNode.h"
#include "host/settings/XmlLayer.h"

namespace tallyquist {

struct XmlFile {
    XmlDocument document;
    XmlNode root;  // goes before its document, as the parser plug-in asks
};

// Nothing when there is no such file. Throws CommandError, which says where and what, for one that
// cannot be read, is not well-formed or has another root element. `xml` is bound and outlives the
// result.
std::optional<XmlFile> OpenXmlFile(XmlLayer& xml, unsigned int rootTag, const std::string& path);

}  // namespace tallyquist
