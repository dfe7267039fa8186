// Keeps an operation of many steps from looking in each whether the catalogue has changed.
#pragma once

#include <utility>

#include "CostCountCommon/CommonXMLPxd.h"

namespace xmlpxd {

// The index of names is brought up to date once for all of a scope, in which nothing touches the
// catalogue.
class IndexedTags {
public:
    explicit IndexedTags(CCommonXmlPxd& xml) : m_xml(xml) {
        m_xml.IndexTags();
        m_wasIndexed = std::exchange(m_xml.m_isIndexed, true);
    }
    ~IndexedTags() { m_xml.m_isIndexed = m_wasIndexed; }
    IndexedTags(const IndexedTags&) = delete;
    IndexedTags& operator=(const IndexedTags&) = delete;

private:
    CCommonXmlPxd& m_xml;
    bool m_wasIndexed = false;
};

}  // namespace xmlpxd
