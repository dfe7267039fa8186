// An element-data chain, given back at the end.
#pragma once

#include "CostCountCommon/CommonXMLPxd.h"

namespace xmlpxd {

class ElementChain {
public:
    explicit ElementChain(CCommonXmlPxd& xml) : m_xml(xml) {}
    ~ElementChain() { m_xml.releaseElementData(m_first); }
    ElementChain(const ElementChain&) = delete;
    ElementChain& operator=(const ElementChain&) = delete;

    // Null when there is none.
    CCommonXmlPxdElementData* First() const { return m_first; }
    // For a function that gives a chain.
    CCommonXmlPxdElementData** Out() { return &m_first; }

private:
    CCommonXmlPxd& m_xml;
    CCommonXmlPxdElementData* m_first = nullptr;
};

}  // namespace xmlpxd
