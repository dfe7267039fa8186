// Reading elements into records, and their texts alone. Its external interface is the reading and
// writing part of CCommonXmlPxd.
#include <exception>
#include <limits>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "CostCountCommon/CommonXMLPxd.h"
#include "CostCountCommon/src/Log.h"
#include "CostCountCommon/xmlpxd/Print.h"
#include "CostCountCommon/xmlpxd/XmlNode.h"

namespace {

using xmlpxd::Print;
using xmlpxd::ReadText;
using xmlpxd::TextResult;
using xmlpxd::XmlNode;

constexpr const char* SOURCE = "CommonXmlPxd";

template <typename Entry>
bool Read(const XMLPXD_FUNCLIST& functions, Entry* XMLPXD_FUNCLIST::*entry, PNODE node,
          std::string* text, unsigned int* err) {
    return ReadText(functions, entry, node, text, err) == TextResult::READ;
}

// The handles of all attributes; false on failure.
bool ListAttributes(const XMLPXD_FUNCLIST& functions, PNODE node, std::vector<XmlNode>* attributes,
                    unsigned int* err) {
    if (functions.GetAttributes == nullptr) {
        *err = XMLPXD_INVALID_ARGUMENT;
        return false;
    }
    unsigned int work = 0;
    const unsigned int count = functions.GetAttributes(node, nullptr, 0, &work, err);
    if (*err != XMLPXD_OK || count == 0) {
        return *err == XMLPXD_OK;
    }
    std::vector<PNODE> handles(count, nullptr);
    attributes->reserve(count);
    functions.GetAttributes(node, handles.data(), count, &work, err);
    for (PNODE handle : handles) {
        attributes->emplace_back(functions, handle);
    }
    return *err == XMLPXD_OK;
}

}  // namespace

// Fills what it can; the caller has brought the index up to date.
bool CCommonXmlPxd::ReadElement(void* node, CCommonXmlPxdElementData* record, unsigned int* err) {
    const XMLPXD_FUNCLIST& functions = *m_FunctionsXmlPxd;
    if (!Read(functions, &XMLPXD_FUNCLIST::GetElementName, node, &record->m_Name, err)) {
        return false;
    }
    record->m_ElementID = ElementIDOf(node, record->m_Name, err);
    std::vector<XmlNode> attributes;
    if (record->m_ElementID == XMLTAG_NONE ||
        !Read(functions, &XMLPXD_FUNCLIST::GetElementText, node, &record->m_Values.emplace_back(),
              err) ||
        !ListAttributes(functions, node, &attributes, err)) {
        return false;
    }
    for (const XmlNode& attribute : attributes) {
        std::string& name = record->m_AttributeNames.emplace_back();
        std::string& value = record->m_AttributeValues.emplace_back();
        if (!Read(functions, &XMLPXD_FUNCLIST::GetAttributeName, attribute.Get(), &name, err) ||
            !Read(functions, &XMLPXD_FUNCLIST::GetAttributeValue, attribute.Get(), &value, err)) {
            return false;
        }
        record->m_AttributeIDs.push_back(AttributeID(name));
    }
    return true;
}

bool CCommonXmlPxd::GetElementData(void* node, CCommonXmlPxdElementData* record,
                                   unsigned int* err) try {
    if (m_FunctionsXmlPxd == nullptr || node == nullptr || record == nullptr || err == nullptr) {
        return false;
    }
    IndexTags();
    CCommonXmlPxdElementData data;
    if (!ReadElement(node, &data, err)) {
        return false;
    }
    data.m_Next = record->m_Next;
    *record = std::move(data);
    return true;
} catch (const std::exception&) {
    *err = XMLPXD_OUT_OF_MEMORY;
    return false;
}

bool CCommonXmlPxd::GetElements(void* parent, CCommonXmlPxdElementData** first,
                                unsigned int* err) try {
    if (first != nullptr) {
        *first = nullptr;
    }
    if (m_FunctionsXmlPxd == nullptr || parent == nullptr || first == nullptr || err == nullptr) {
        return false;
    }
    const XMLPXD_FUNCLIST& functions = *m_FunctionsXmlPxd;
    if (functions.GetAllChildElements == nullptr) {
        *err = XMLPXD_INVALID_ARGUMENT;
        return false;
    }
    unsigned int work = 0;
    const unsigned int count = functions.GetAllChildElements(parent, nullptr, 0, &work, err);
    if (*err != XMLPXD_OK) {
        return false;
    }
    XmlNode current;
    unsigned int currentId = XMLTAG_NONE;
    CCommonXmlPxdElementData** end = first;
    for (unsigned int i = 0; i < count; ++i) {
        bool isAcross = false;
        current = XmlNode(functions, current ? Step(current.Get(), currentId, &isAcross, err)
                                             : GetNextNode(parent, NODE_SELF, err));
        if (!current) {
            return false;
        }
        std::unique_ptr<CCommonXmlPxdElementData> record(new (std::nothrow)
                                                             CCommonXmlPxdElementData);
        if (record == nullptr) {
            LibLogger().WriteLog(SOURCE, __LINE__, 'e', 0, "new CCommonXmlPxdElementData failed.");
            return false;
        }
        // The first step has brought the index up to date.
        if (!ReadElement(current.Get(), record.get(), err)) {
            return false;
        }
        currentId = record->m_ElementID;
        *end = record.release();
        end = &(*end)->m_Next;
    }
    return true;
} catch (const std::exception&) {
    *err = XMLPXD_OUT_OF_MEMORY;
    return false;
}

bool CCommonXmlPxd::ReadElements(void* parent, CCommonXmlPxdElementData** first,
                                 unsigned int* err) {
    if (GetElements(parent, first, err)) {
        return true;
    }
    releaseElementData(std::exchange(*first, nullptr));
    if (*err == XMLPXD_OK) {
        *err = XMLPXD_OUT_OF_MEMORY;
    }
    return false;
}

void CCommonXmlPxd::releaseElementData(CCommonXmlPxdElementData* first) {
    while (first != nullptr) {
        delete std::exchange(first, first->m_Next);
    }
}

// The messages name the reader of the database settings: those who look for them know them so.
bool CCommonXmlPxd::GetElementValueWithSearch(void* start, int tagId, bool childOnly,
                                              std::string* value, unsigned int* err) {
    if (m_FunctionsXmlPxd == nullptr) {
        return false;
    }
    if (start == nullptr || value == nullptr || err == nullptr || tagId <= 0 ||
        tagId > static_cast<int>(XMLTAG_LAST)) {
        Print("CCommonXmlPxd::GetElementValueWithSearch() ERROR: PARAMETER");
        return false;
    }
    const auto tag = static_cast<unsigned int>(tagId);
    CCommonXmlPxdElementData data;
    if (!childOnly) {
        unsigned long unlimited = std::numeric_limits<unsigned long>::max();
        if (!ReadInWalk(start, tag, &unlimited, &data, err)) {
            return false;
        }
    } else {
        const XmlNode element(*m_FunctionsXmlPxd, SearchParentElement(start, tag, err));
        if (!element) {
            Print("CCommonXmlPxd::GetDBSetting() ERROR: SearchParentElement(ElementID=%d)\n",
                  tagId);
            return false;
        }
        if (!ReadFound(element.Get(), tag, &data, err)) {
            return false;
        }
    }
    value->swap(data.m_Values.front());
    return true;
}

bool CCommonXmlPxd::ReadInWalk(void* start, unsigned int tagId, unsigned long* strays,
                               CCommonXmlPxdElementData* data, unsigned int* err) {
    const XmlNode element(*m_FunctionsXmlPxd, Search(start, tagId, strays, err));
    if (!element) {
        Print("CCommonXmlPxd::GetDBSetting() ERROR: SearchElement(ElementID=%d)\n",
              static_cast<int>(tagId));
        return false;
    }
    return ReadFound(element.Get(), tagId, data, err);
}

bool CCommonXmlPxd::ReadFound(void* element, unsigned int tagId, CCommonXmlPxdElementData* data,
                              unsigned int* err) {
    if (!GetElementData(element, data, err)) {
        Print("CCommonXmlPxd::GetDBSetting() ERROR: GetElementData(ElementID=%d), err_code=%u\n",
              static_cast<int>(tagId), *err);
        return false;
    }
    return true;
}

// By value, as the interfaces of the class take texts.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
bool CCommonXmlPxd::SetElementBySettingValue(void* start, unsigned int tagId, std::string value) {
    if (m_FunctionsXmlPxd == nullptr) {
        return false;
    }
    unsigned int err = XMLPXD_OK;
    const XmlNode element(*m_FunctionsXmlPxd, SearchElement(start, tagId, &err));
    if (!element || err != XMLPXD_OK) {
        Print(
            "CCommonXmlPxd::SetElementBySettingValue() ERROR: SearchElement(1) in_CmdTagID=%u, "
            "errCode=%u\n",
            tagId, err);
        return false;
    }
    err = xmlpxd::SetText(*m_FunctionsXmlPxd, element.Get(), value, XMLPXD_MACHINE_TEXT);
    if (err != XMLPXD_OK) {
        Print("CCommonXmlPxd::SetElementBySettingValue() ERROR: SetElementValue(2) errCode = %u\n",
              err);
        return false;
    }
    return true;
}
