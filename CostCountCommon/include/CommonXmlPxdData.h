// The value records of the XML layer.
#pragma once

#include <list>
#include <string>

// One element as it was read, chained to the next. Made by CCommonXmlPxd::GetElements, given back
// with CCommonXmlPxd::releaseElementData.
struct CCommonXmlPxdElementData {
    std::string m_Name;
    std::list<std::string> m_Values;  // one entry, the element's text, empty or not
    unsigned int m_ElementID = 0;
    // One entry per attribute each, in document order.
    std::list<std::string> m_AttributeNames;
    std::list<unsigned int> m_AttributeIDs;
    std::list<std::string> m_AttributeValues;
    CCommonXmlPxdElementData* m_Next = nullptr;
};
