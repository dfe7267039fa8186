#include "CostCountCommon/xmlpxd/XmlNode.h"

namespace xmlpxd {

XmlDocument OpenDocument(const XMLPXD_FUNCLIST& functions, const std::string& path,
                         unsigned int* err) {
    if (functions.CreateDocByFile == nullptr || path.find('\0') != std::string::npos) {
        *err = XMLPXD_INVALID_ARGUMENT;
        return {};
    }
    return {functions, functions.CreateDocByFile(path.c_str(), err)};
}

unsigned int SetText(const XMLPXD_FUNCLIST& functions, PNODE element, const std::string& text,
                     XmlPxdValueKind kind) {
    if (functions.SetElementValue == nullptr) {
        return XMLPXD_INVALID_ARGUMENT;
    }
    if (text.find('\0') == std::string::npos) {
        return functions.SetElementValue(element, text.c_str(), kind);
    }
    // The plug-in would see the end of the text. XML cannot hold this character either.
    if (kind == XMLPXD_MACHINE_TEXT) {
        return XMLPXD_NOT_HELD_BY_XML;
    }
    std::string replaced;
    for (const char character : text) {
        replaced += character == '\0' ? std::string("\uFFFD") : std::string(1, character);
    }
    return functions.SetElementValue(element, replaced.c_str(), kind);
}

}  // namespace xmlpxd
