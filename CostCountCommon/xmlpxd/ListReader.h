// Reading lists of items that tables describe. Whatever fails prints its row's message.
#pragma once

#include <list>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "CostCountCommon/CommonXMLPxd.h"
#include "CostCountCommon/xmlpxd/ElementChain.h"
#include "CostCountCommon/xmlpxd/Steps.h"
#include "CostCountCommon/xmlpxd/XmlNode.h"

namespace xmlpxd {

// A list element and the items in it.
struct ListTexts {
    unsigned int list;
    unsigned int item;
    const char* noList;
    const char* noTag;
    const char* noItems;      // also when they cannot be counted
    const char* noMemory;     // logged, with the number of items
    const char* notReceived;  // printed when the plug-in gives no items
};

// A value that an item must have.
struct ValueRow {
    unsigned int tag;
    const char* missing;
};

// A value that becomes a field of a record.
template <typename Record>
struct RequiredRow {
    ValueRow value;
    std::string Record::*text;
};

// Adds the name that an element of a text in several languages holds, unless there is one in that
// language. The language is the first attribute's value, whatever the attribute's name.
void AddName(std::map<std::string, std::string>& names, const CCommonXmlPxdElementData& element);

// Serves one list of an object.
class ListReader {
public:
    explicit ListReader(CCommonXmlPxd& xml)
        : m_xml(xml), m_functions(xml.m_FunctionsXmlPxd.get()) {}

    // The list element among the root's children; none, with nothing printed, of an unbound object,
    // which is all that may be asked of such a one.
    XmlNode List(void* root, const ListTexts& texts) const;

    // Reads each item of the list by read(reader, item, &record), up to the first that gives false,
    // and appends the records.
    template <typename Record, typename Read>
    bool Items(const XmlNode& list, const ListTexts& texts, std::list<Record>* records, Read read) {
        std::vector<XmlNode> items;
        if (!list || !Receive(list, texts, &items)) {
            return false;
        }
        for (const XmlNode& item : items) {
            Record record;
            if (!read(*this, item, &record)) {
                return false;
            }
            records->push_back(std::move(record));
        }
        return true;
    }

    bool Value(const XmlNode& item, const ValueRow& row, std::string* value);
    template <typename Record, size_t N>
    bool Values(const XmlNode& item, const RequiredRow<Record> (&rows)[N], Record* record) {
        for (const RequiredRow<Record>& row : rows) {
            if (!Value(item, row.value, &(record->*row.text))) {
                return false;
            }
        }
        return true;
    }

    // Gives each child element to use(element). `notRead`, unless null, is printed on failure.
    template <typename Use>
    bool Children(const XmlNode& item, const char* notRead, Use use) {
        ElementChain elements(m_xml);
        if (!ReadChildren(item, notRead, &elements)) {
            return false;
        }
        for (const CCommonXmlPxdElementData* element = elements.First(); element != nullptr;
             element = element->m_Next) {
            use(*element);
        }
        return true;
    }

private:
    // A value that an item lacks is looked for in the items after it, and items may lie within
    // items: what a damaged file has once may be walked past and read for each item. How much of
    // that is done for one list is limited, or such a file would keep its reader for hours.
    static constexpr unsigned long LEAST_STRAYS = 1'000'000;
    static constexpr unsigned long STRAYS_PER_ITEM = 8;

    void Spend(const CCommonXmlPxdElementData& element);
    bool Receive(const XmlNode& list, const ListTexts& texts, std::vector<XmlNode>* items);
    bool ReadChildren(const XmlNode& item, const char* notRead, ElementChain* elements);

    CCommonXmlPxd& m_xml;
    const XMLPXD_FUNCLIST* m_functions;
    unsigned long m_strays = LEAST_STRAYS;
};

// A step that reads a list.
template <typename Record, typename Read>
unsigned int ReadList(CCommonXmlPxd& xml, void* root, const ListTexts& texts,
                      std::list<Record>* records, Read read) {
    return ResultOf([&] {
        ListReader reader(xml);
        return reader.Items(reader.List(root, texts), texts, records, read);
    });
}

}  // namespace xmlpxd
