// Finding elements: the walk and the searches along it. Its external interface is the searching
// part of CCommonXmlPxd.
#include <exception>
#include <limits>

#include "CostCountCommon/CommonXMLPxd.h"
#include "CostCountCommon/xmlpxd/ChildElements.h"
#include "CostCountCommon/xmlpxd/Print.h"
#include "CostCountCommon/xmlpxd/TagCatalogue.h"
#include "CostCountCommon/xmlpxd/XmlNode.h"

namespace {

using xmlpxd::IsContainer;
using xmlpxd::NodeFrom;
using xmlpxd::Print;
using xmlpxd::ReadText;
using xmlpxd::TextResult;
using xmlpxd::XmlNode;

constexpr unsigned int NO_NUMBER = 0xFFFFFFFF;

bool IsTag(unsigned int tagId) {
    return tagId > XMLTAG_NONE && tagId <= XMLTAG_LAST;
}

bool ReadName(const XMLPXD_FUNCLIST& functions, PNODE node, std::string* name, unsigned int* err) {
    return ReadText(functions, &XMLPXD_FUNCLIST::GetElementName, node, name, err) ==
           TextResult::READ;
}

}  // namespace

unsigned int CCommonXmlPxd::ElementIDOf(void* node, const std::string& name, unsigned int* err) {
    unsigned int id = FirstElementID(name);
    if (id == XMLTAG_PRN_PRINTER) {
        // Printers of the user settings and of the printer list are told apart by the list.
        const XMLPXD_FUNCLIST& functions = *m_FunctionsXmlPxd;
        const XmlNode parent = NodeFrom(functions, &XMLPXD_FUNCLIST::GetParentNode, node, err);
        std::string parentName;
        if (parent ? !ReadName(functions, parent.Get(), &parentName, err)
                   : *err != XMLPXD_NO_SUCH_NODE) {
            return XMLTAG_NONE;
        }
        if (parent && FirstElementID(parentName) == XMLTAG_USER_PRINTERLIST) {
            id = GetElementID(name, true);
        }
    }
    *err = id == XMLTAG_NONE ? XMLPXD_NOT_IN_CATALOGUE : XMLPXD_OK;
    return id;
}

void* CCommonXmlPxd::GetNextNode(void* node, unsigned int tagId, unsigned int* err) try {
    if (m_FunctionsXmlPxd == nullptr || node == nullptr || err == nullptr ||
        (tagId != NODE_SELF && !IsTag(tagId))) {
        return nullptr;
    }
    if (tagId == NODE_SELF) {
        IndexTags();
        std::string name;
        if (!ReadName(*m_FunctionsXmlPxd, node, &name, err)) {
            return nullptr;
        }
        tagId = ElementIDOf(node, name, err);
        if (tagId == XMLTAG_NONE) {
            return nullptr;
        }
    }
    bool isAcross = false;
    return Step(node, tagId, &isAcross, err);
} catch (const std::exception&) {
    *err = XMLPXD_OUT_OF_MEMORY;
    return nullptr;
}

void* CCommonXmlPxd::GetNextNode(void* node, const std::string& name) try {
    if (m_FunctionsXmlPxd == nullptr || node == nullptr) {
        return nullptr;
    }
    const XMLPXD_FUNCLIST& functions = *m_FunctionsXmlPxd;
    unsigned int err = XMLPXD_OK;
    std::string siblingName;
    XmlNode sibling = NodeFrom(functions, &XMLPXD_FUNCLIST::GetNextSibling, node, &err);
    while (sibling && ReadName(functions, sibling.Get(), &siblingName, &err)) {
        if (!siblingName.empty() && siblingName == name) {
            return sibling.Release();
        }
        sibling = NodeFrom(functions, &XMLPXD_FUNCLIST::GetNextSibling, sibling.Get(), &err);
    }
    return nullptr;
} catch (const std::exception&) {
    return nullptr;  // out of memory
}

void* CCommonXmlPxd::Step(void* node, unsigned int tagId, bool* isAcross, unsigned int* err) {
    const XMLPXD_FUNCLIST& functions = *m_FunctionsXmlPxd;
    *isAcross = !IsContainer(tagId);
    if (!*isAcross) {
        return NodeFrom(functions, &XMLPXD_FUNCLIST::GetFirstChild, node, err).Release();
    }
    XmlNode sibling = NodeFrom(functions, &XMLPXD_FUNCLIST::GetNextSibling, node, err);
    if (!sibling) {
        *isAcross = false;
        const XmlNode parent = NodeFrom(functions, &XMLPXD_FUNCLIST::GetParentNode, node, err);
        if (parent) {
            sibling = NodeFrom(functions, &XMLPXD_FUNCLIST::GetNextSibling, parent.Get(), err);
        }
    }
    return sibling.Release();
}

void* CCommonXmlPxd::SearchElement(void* start, unsigned int tagId, unsigned int* err) {
    unsigned long unlimited = std::numeric_limits<unsigned long>::max();
    return Search(start, tagId, &unlimited, err);
}

void* CCommonXmlPxd::Search(void* start, unsigned int tagId, unsigned long* strays,
                            unsigned int* err) try {
    if (m_FunctionsXmlPxd == nullptr || start == nullptr || err == nullptr || !IsTag(tagId)) {
        return nullptr;
    }
    const XMLPXD_FUNCLIST& functions = *m_FunctionsXmlPxd;
    const auto wanted = m_XmlTagIDs.find(tagId);
    if (wanted == m_XmlTagIDs.end()) {
        *err = XMLPXD_NOT_IN_CATALOGUE;
        return nullptr;
    }
    std::string name;
    bool isAstray = false;
    // The first step has brought the index up to date.
    for (XmlNode candidate(functions, GetNextNode(start, NODE_SELF, err)); candidate;) {
        if (!ReadName(functions, candidate.Get(), &name, err)) {
            return nullptr;
        }
        if (name == wanted->second) {
            return candidate.Release();
        }
        const unsigned int id = FirstElementID(name);
        if (id == XMLTAG_NONE) {
            *err = XMLPXD_NOT_IN_CATALOGUE;
            return nullptr;
        }
        bool isAcross = true;
        candidate = XmlNode(functions, Step(candidate.Get(), id, &isAcross, err));
        isAstray = isAstray || !isAcross;
        if (isAstray) {
            if (*strays == 0) {
                *err = XMLPXD_NO_SUCH_NODE;
                return nullptr;
            }
            --*strays;
        }
    }
    return nullptr;
} catch (const std::exception&) {
    *err = XMLPXD_OUT_OF_MEMORY;
    return nullptr;
}

const std::string* CCommonXmlPxd::ChildName(unsigned int tagId, unsigned int* err) const {
    const auto found = m_XmlTagIDs.find(tagId);
    if (found == m_XmlTagIDs.end()) {
        *err = XMLPXD_NOT_IN_CATALOGUE;
        Print("CCommonXmlPxd::SearchParentElement() ERROR: m_XmlTagIDs.end()");
        return nullptr;
    }
    return &found->second;
}

void* CCommonXmlPxd::SearchParentElement(void* parent, unsigned int tagId, unsigned int* err) try {
    if (m_FunctionsXmlPxd == nullptr || parent == nullptr || err == nullptr || !IsTag(tagId)) {
        return nullptr;
    }
    const std::string* name = ChildName(tagId, err);
    xmlpxd::NamedNode child;
    while (name != nullptr &&
           xmlpxd::NextChild(*m_FunctionsXmlPxd, parent, child.node.Get(), &child, err)) {
        if (child.name == *name) {
            return child.node.Release();
        }
    }
    return nullptr;
} catch (const std::exception&) {
    *err = XMLPXD_OUT_OF_MEMORY;
    return nullptr;
}

// By value, as the interfaces of the class take texts.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
unsigned int CCommonXmlPxd::GetElementNumber(void* node, std::string name, unsigned int* err) {
    if (m_FunctionsXmlPxd == nullptr || node == nullptr || err == nullptr) {
        return NO_NUMBER;
    }
    if (m_FunctionsXmlPxd->GetElementsByElementName == nullptr) {
        *err = XMLPXD_INVALID_ARGUMENT;
        return NO_NUMBER;
    }
    unsigned int work = 0;
    const unsigned int number =
        m_FunctionsXmlPxd->GetElementsByElementName(node, name.c_str(), nullptr, 0, &work, err);
    return *err == XMLPXD_OK ? number : NO_NUMBER;
}
