#include "CostCountCommon/xmlpxd/ChildElements.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "CostCountCommon/CommonXMLPxd.h"
#include "CostCountCommon/xmlpxd/Print.h"

namespace xmlpxd {
namespace {

// Of children of a message.
constexpr size_t USUAL_NUMBER = 16;

}  // namespace

bool NextChild(const XMLPXD_FUNCLIST& functions, PNODE parent, PNODE last, NamedNode* child,
               unsigned int* err) {
    child->node = last == nullptr
                      ? NodeFrom(functions, &XMLPXD_FUNCLIST::GetFirstChild, parent, err)
                      : NodeFrom(functions, &XMLPXD_FUNCLIST::GetNextSibling, last, err);
    if (!child->node) {
        if (last == nullptr) {
            Print("CCommonXmlPxd::SearchParentElement() ERROR: GetFirstChild() errcode=%u\n", *err);
        } else {
            Print("CCommonXmlPxd::SearchParentElement() ERROR: GetNextSibling() errcode=%u\n",
                  *err);
        }
        return false;
    }
    switch (ReadText(functions, &XMLPXD_FUNCLIST::GetElementName, child->node.Get(), &child->name,
                     err)) {
        case TextResult::NO_SIZE:
            Print("CCommonXmlPxd::SearchParentElement() ERROR: GetElementName(1) errcode=%u\n",
                  *err);
            return false;
        case TextResult::NOT_READ:
            Print("CCommonXmlPxd::SearchParentElement() ERROR: GetElementName(2) errcode=%u\n",
                  *err);
            return false;
        case TextResult::READ:
            break;
    }
    return true;
}

XmlNode RequiredChild(CCommonXmlPxd& xml, const XMLPXD_FUNCLIST* functions, PNODE parent,
                      unsigned int tag, const char* missing) {
    if (functions == nullptr) {
        return {};
    }
    unsigned int err = XMLPXD_OK;
    XmlNode child(*functions, xml.SearchParentElement(parent, tag, &err));
    if (!child) {
        Print("%s", missing);
    }
    return child;
}

PNODE ChildElements::Find(const std::string& name, unsigned int* err) try {
    const auto passed = std::find_if(m_passed.begin(), m_passed.end(),
                                     [&](const NamedNode& child) { return child.name == name; });
    if (passed != m_passed.end()) {
        return passed->node.Get();
    }
    m_passed.reserve(USUAL_NUMBER);
    for (NamedNode child;
         NextChild(m_functions, m_parent, m_passed.empty() ? nullptr : m_passed.back().node.Get(),
                   &child, err);) {
        m_passed.push_back(std::move(child));
        if (m_passed.back().name == name) {
            return m_passed.back().node.Get();
        }
    }
    return nullptr;
} catch (const std::exception&) {
    *err = XMLPXD_OUT_OF_MEMORY;
    return nullptr;
}

}  // namespace xmlpxd
