// The child elements of an element, one after the other. What goes wrong is printed as a search
// among them says it.
#pragma once

#include <string>
#include <vector>

#include "CostCountCommon/xmlpxd/XmlNode.h"

class CCommonXmlPxd;

namespace xmlpxd {

struct NamedNode {
    XmlNode node;
    std::string name;
};

// The child after `last`, or the first when that is null; false, also at the end, with the reason
// in `*err`. `last` may be the child's own.
bool NextChild(const XMLPXD_FUNCLIST& functions, PNODE parent, PNODE last, NamedNode* child,
               unsigned int* err);

// The first child of that tag; `missing` is printed too when there is none. None, with nothing
// printed, of an unbound object, which has no functions.
XmlNode RequiredChild(CCommonXmlPxd& xml, const XMLPXD_FUNCLIST* functions, PNODE parent,
                      unsigned int tag, const char* missing);

// Finds several children of one parent without asking for one twice.
class ChildElements {
public:
    ChildElements(const XMLPXD_FUNCLIST& functions, PNODE parent)
        : m_functions(functions), m_parent(parent) {}

    // The first child of that name, null when there is none or it cannot be told.
    PNODE Find(const std::string& name, unsigned int* err);

private:
    const XMLPXD_FUNCLIST& m_functions;
    PNODE m_parent;
    std::vector<NamedNode> m_passed;
};

}  // namespace xmlpxd
