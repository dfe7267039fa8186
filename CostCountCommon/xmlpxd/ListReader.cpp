#include "CostCountCommon/xmlpxd/ListReader.h"

#include <algorithm>
#include <memory>
#include <new>

#include "CostCountCommon/src/Log.h"
#include "CostCountCommon/xmlpxd/ChildElements.h"
#include "CostCountCommon/xmlpxd/Print.h"
#include "CostCountCommon/xmlpxd/TagCatalogue.h"

namespace xmlpxd {

void AddName(std::map<std::string, std::string>& names, const CCommonXmlPxdElementData& element) {
    const std::list<std::string>& attributes = element.m_AttributeValues;
    names.emplace(attributes.empty() ? std::string() : attributes.front(),
                  element.m_Values.front());
}

XmlNode ListReader::List(void* root, const ListTexts& texts) const {
    return RequiredChild(m_xml, m_functions, root, texts.list, texts.noList);
}

bool ListReader::Receive(const XmlNode& list, const ListTexts& texts, std::vector<XmlNode>* items) {
    const auto name = m_xml.m_XmlTagIDs.find(texts.item);
    if (name == m_xml.m_XmlTagIDs.end()) {
        Print("%s", texts.noTag);
        return false;
    }
    unsigned int err = XMLPXD_OK;
    const unsigned int number = m_xml.GetElementNumber(list.Get(), name->second, &err);
    const int count = static_cast<int>(number);
    if (err != XMLPXD_OK || count <= 0) {
        Print("%s", texts.noItems);
        return false;
    }
    const std::unique_ptr<PNODE[]> handles(new (std::nothrow) PNODE[number]());
    if (handles == nullptr) {
        LibLogger().WriteLog("CommonXmlPxd", __LINE__, 'e', 0, texts.noMemory, count);
        return false;
    }
    m_strays += STRAYS_PER_ITEM * number;
    items->reserve(number);
    unsigned int work = 0;
    m_functions->GetElementsByElementName(list.Get(), name->second.c_str(), handles.get(), number,
                                          &work, &err);
    for (unsigned int i = 0; i < number && handles[i] != nullptr; ++i) {
        items->emplace_back(*m_functions, handles[i]);
    }
    if (err != XMLPXD_OK || items->empty()) {
        Print("%s", texts.notReceived);
        return false;
    }
    return true;
}

// Reading costs about as many steps.
void ListReader::Spend(const CCommonXmlPxdElementData& element) {
    constexpr unsigned long BYTES_PER_STEP = 32;
    constexpr unsigned long STEPS_PER_ATTRIBUTE = 16;
    const unsigned long cost = 1 + element.m_Values.front().size() / BYTES_PER_STEP +
                               element.m_AttributeValues.size() * STEPS_PER_ATTRIBUTE;
    m_strays -= std::min(m_strays, cost);
}

bool ListReader::Value(const XmlNode& item, const ValueRow& row, std::string* value) {
    unsigned int err = XMLPXD_OK;
    const unsigned long strays = m_strays;
    CCommonXmlPxdElementData data;
    if (!m_xml.ReadInWalk(item.Get(), row.tag, &m_strays, &data, &err)) {
        Print("%s", row.missing);
        return false;
    }
    if (m_strays != strays) {
        Spend(data);
    }
    value->swap(data.m_Values.front());
    return true;
}

bool ListReader::ReadChildren(const XmlNode& item, const char* notRead, ElementChain* elements) {
    unsigned int err = XMLPXD_OK;
    bool isRead = m_xml.GetElements(item.Get(), elements->Out(), &err);
    // No item has containers of its own: the walk has gone into another item.
    bool isAstray = false;
    for (const CCommonXmlPxdElementData* element = elements->First(); isRead && element != nullptr;
         element = element->m_Next) {
        isAstray = isAstray || IsContainer(element->m_ElementID);
        if (isAstray) {
            Spend(*element);
            isRead = m_strays != 0;
        }
    }
    if (!isRead && notRead != nullptr) {
        Print("%s", notRead);
    }
    return isRead;
}

}  // namespace xmlpxd
