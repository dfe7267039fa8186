#include "CostCountCommon/xmlpxd/XmlNode.h"

namespace xmlpxd {

XmlDocument OpenDocument(const XMLPXD_FUNCLIST& functions, const std::string& path,
                         unsigned int* err) {
    if (functions.CreateDocByFile == nullptr) {
        *err = XMLPXD_INVALID_ARGUMENT;
        return {};
    }
    return {functions, functions.CreateDocByFile(path.c_str(), err)};
}

unsigned int SetText(const XMLPXD_FUNCLIST& functions, PNODE element, const std::string& text,
                     XmlPxdValueKind kind) {
    return functions.SetElementValue == nullptr
               ? static_cast<unsigned int>(XMLPXD_INVALID_ARGUMENT)
               : functions.SetElementValue(element, text.c_str(), kind);
}

}  // namespace xmlpxd
