// Owners of the parser plug-in's handles, and the one place where its entries are called: an entry
// that the plug-in lacks fails there as one that refuses its arguments.
#pragma once

#include <string>
#include <utility>

#include "CostCountCommon/include/XmlPxdFunctions.h"

namespace xmlpxd {

// A node handle, given back at the end.
class XmlNode {
public:
    XmlNode() = default;
    XmlNode(const XMLPXD_FUNCLIST& functions, PNODE node) : m_functions(&functions), m_node(node) {}
    XmlNode(XmlNode&& other) noexcept
        : m_functions(other.m_functions), m_node(std::exchange(other.m_node, nullptr)) {}
    XmlNode& operator=(XmlNode&& other) noexcept {
        std::swap(m_functions, other.m_functions);
        std::swap(m_node, other.m_node);
        return *this;
    }
    ~XmlNode() {
        if (m_node != nullptr && m_functions->DeleteNode != nullptr) {
            m_functions->DeleteNode(m_node);
        }
    }

    explicit operator bool() const { return m_node != nullptr; }
    PNODE Get() const { return m_node; }
    [[nodiscard]] PNODE Release() { return std::exchange(m_node, nullptr); }

private:
    const XMLPXD_FUNCLIST* m_functions = nullptr;
    PNODE m_node = nullptr;
};

// A document handle, freed at the end.
class XmlDocument {
public:
    XmlDocument() = default;
    XmlDocument(const XMLPXD_FUNCLIST& functions, PDOC document)
        : m_functions(&functions), m_document(document) {}
    XmlDocument(XmlDocument&& other) noexcept
        : m_functions(other.m_functions), m_document(std::exchange(other.m_document, nullptr)) {}
    XmlDocument& operator=(XmlDocument&&) = delete;
    ~XmlDocument() {
        if (m_document != nullptr && m_functions->DeleteDoc != nullptr) {
            m_functions->DeleteDoc(m_document);
        }
    }

    explicit operator bool() const { return m_document != nullptr; }
    PDOC Get() const { return m_document; }
    [[nodiscard]] PDOC Release() { return std::exchange(m_document, nullptr); }

private:
    const XMLPXD_FUNCLIST* m_functions = nullptr;
    PDOC m_document = nullptr;
};

// A node that an entry such as GetFirstChild gives for a node or document; none unless the entry
// succeeded.
template <typename Entry>
XmlNode NodeFrom(const XMLPXD_FUNCLIST& functions, Entry* XMLPXD_FUNCLIST::*entry, void* from,
                 unsigned int* err) {
    if (functions.*entry == nullptr) {
        *err = XMLPXD_INVALID_ARGUMENT;
        return {};
    }
    XmlNode node(functions, (functions.*entry)(from, err));
    return *err == XMLPXD_OK ? std::move(node) : XmlNode();
}

enum class TextResult { READ, NO_SIZE, NOT_READ };

// A text that an entry such as GetElementName gives, asked for twice.
template <typename Entry>
TextResult ReadText(const XMLPXD_FUNCLIST& functions, Entry* XMLPXD_FUNCLIST::*entry, PNODE node,
                    std::string* text, unsigned int* err) {
    if (functions.*entry == nullptr) {
        *err = XMLPXD_INVALID_ARGUMENT;
        return TextResult::NO_SIZE;
    }
    const unsigned long length = (functions.*entry)(node, nullptr, 0, err);
    if (length == XMLPXD_NO_LENGTH || *err != XMLPXD_OK) {
        return TextResult::NO_SIZE;
    }
    text->assign(length + 1, '\0');
    const unsigned long read = (functions.*entry)(node, text->data(), length + 1, err);
    const bool isRead = read <= length && *err == XMLPXD_OK;
    text->resize(isRead ? read : 0);
    return isRead ? TextResult::READ : TextResult::NOT_READ;
}

// Opens a file, or nothing.
XmlDocument OpenDocument(const XMLPXD_FUNCLIST& functions, const std::string& path,
                         unsigned int* err);

// A new last child, without or with a text; none unless it was made.
XmlNode NewElement(const XMLPXD_FUNCLIST& functions, PNODE parent, const std::string& name);
XmlNode NewElement(const XMLPXD_FUNCLIST& functions, PNODE parent, const std::string& name,
                   const std::string& text, XmlPxdValueKind kind);

// 0 or the plug-in's code, as in all below.
unsigned int SetAttribute(const XMLPXD_FUNCLIST& functions, PNODE element, const std::string& name,
                          const std::string& value);

unsigned int Save(const XMLPXD_FUNCLIST& functions, PDOC document, const std::string& path);

// Sets an element's text.
unsigned int SetText(const XMLPXD_FUNCLIST& functions, PNODE element, const std::string& text,
                     XmlPxdValueKind kind);

}  // namespace xmlpxd
