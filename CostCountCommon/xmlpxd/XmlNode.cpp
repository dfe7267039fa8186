#include "CostCountCommon/xmlpxd/XmlNode.h"

namespace xmlpxd {
namespace {

// A text as the plug-in takes it, which would see its end at a NUL. XML cannot hold this character
// either: null for machine text, and made `replaced` for typed text.
const char* WithoutNul(const std::string& text, XmlPxdValueKind kind, std::string* replaced) {
    if (text.find('\0') == std::string::npos) {
        return text.c_str();
    }
    if (kind == XMLPXD_MACHINE_TEXT) {
        return nullptr;
    }
    for (const char character : text) {
        replaced->append(character == '\0' ? std::string("\uFFFD") : std::string(1, character));
    }
    return replaced->c_str();
}

}  // namespace

XmlDocument OpenDocument(const XMLPXD_FUNCLIST& functions, const std::string& path,
                         unsigned int* err) {
    if (functions.CreateDocByFile == nullptr || path.find('\0') != std::string::npos) {
        *err = XMLPXD_INVALID_ARGUMENT;
        return {};
    }
    return {functions, functions.CreateDocByFile(path.c_str(), err)};
}

XmlNode NewElement(const XMLPXD_FUNCLIST& functions, PNODE parent, const std::string& name) {
    unsigned int err = XMLPXD_OK;
    if (functions.CreateElement == nullptr) {
        return {};
    }
    XmlNode element(functions, functions.CreateElement(parent, name.c_str(), &err));
    return err == XMLPXD_OK ? std::move(element) : XmlNode();
}

XmlNode NewElement(const XMLPXD_FUNCLIST& functions, PNODE parent, const std::string& name,
                   const std::string& text, XmlPxdValueKind kind) {
    unsigned int err = XMLPXD_OK;
    std::string replaced;
    const char* held = WithoutNul(text, kind, &replaced);
    if (functions.CreateElementWithValue == nullptr || held == nullptr) {
        return {};
    }
    XmlNode element(functions, functions.CreateElementWithValue(parent, name.c_str(), held, nullptr,
                                                                kind, &err));
    return err == XMLPXD_OK ? std::move(element) : XmlNode();
}

unsigned int SetAttribute(const XMLPXD_FUNCLIST& functions, PNODE element, const std::string& name,
                          const std::string& value) {
    if (functions.SetAttribute == nullptr) {
        return XMLPXD_INVALID_ARGUMENT;
    }
    if (value.find('\0') != std::string::npos) {
        return XMLPXD_NOT_HELD_BY_XML;
    }
    return functions.SetAttribute(element, name.c_str(), value.c_str());
}

unsigned int Save(const XMLPXD_FUNCLIST& functions, PDOC document, const std::string& path) {
    if (functions.Save == nullptr || path.find('\0') != std::string::npos) {
        return XMLPXD_INVALID_ARGUMENT;
    }
    return functions.Save(document, path.c_str());
}

unsigned int SetText(const XMLPXD_FUNCLIST& functions, PNODE element, const std::string& text,
                     XmlPxdValueKind kind) {
    std::string replaced;
    const char* held = WithoutNul(text, kind, &replaced);
    if (functions.SetElementValue == nullptr) {
        return XMLPXD_INVALID_ARGUMENT;
    }
    return held == nullptr ? XMLPXD_NOT_HELD_BY_XML
                           : functions.SetElementValue(element, held, kind);
}

}  // namespace xmlpxd
