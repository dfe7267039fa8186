// Writing elements that tables describe. Whatever fails prints its row's message.
#pragma once

#include <map>
#include <string>

#include "CostCountCommon/CommonXMLPxd.h"
#include "CostCountCommon/xmlpxd/Steps.h"
#include "CostCountCommon/xmlpxd/XmlNode.h"

namespace xmlpxd {

// An element or attribute that is written.
struct NewItem {
    unsigned int tag;
    const char* noTag;       // printed when the catalogue lacks the tag
    const char* notWritten;  // printed when the plug-in refuses
};

// A child element whose text is a field of a record.
template <typename Record>
struct TextRow {
    NewItem element;
    std::string Record::*text;
};

// A list element of a template and the items in it.
struct ListRow {
    unsigned int tag;
    const char* missing;
    NewItem item;
};

// The elements of a text in several languages: names by language code.
struct NamesRow {
    NewItem name;
    NewItem lang;
};

// Serves one operation of an object.
class ElementWriter {
public:
    explicit ElementWriter(CCommonXmlPxd& xml)
        : m_xml(xml), m_functions(xml.m_FunctionsXmlPxd.get()), m_names(xml.m_XmlTagIDs) {}

    // The list element among the root's children; none, with nothing printed, of an unbound object,
    // which is all that may be asked of such a one.
    XmlNode List(void* root, const ListRow& row) const;
    // A new last child.
    XmlNode Element(const XmlNode& parent, const NewItem& row) const;
    XmlNode Text(const XmlNode& parent, const NewItem& row, const std::string& text,
                 XmlPxdValueKind kind = XMLPXD_MACHINE_TEXT) const;
    bool Attribute(const XmlNode& element, const NewItem& row, const std::string& value) const;
    // Whether the catalogue has the tag.
    bool IsKnown(const NewItem& row) const { return FindName(row) != nullptr; }
    // The name of a tag; null, with nothing printed, when the catalogue lacks it.
    const std::string* NameOf(unsigned int tag) const;

    // A name is what a person typed.
    bool Name(const XmlNode& parent, const NamesRow& row, const std::string& name,
              const std::string& language) const;
    bool Names(const XmlNode& parent, const NamesRow& row,
               const std::map<std::string, std::string>& names) const;

    template <typename Record, size_t N>
    bool Texts(const XmlNode& parent, const TextRow<Record> (&rows)[N],
               const Record& record) const {
        for (const TextRow<Record>& row : rows) {
            if (!Text(parent, row.element, record.*row.text)) {
                return false;
            }
        }
        return true;
    }

    // An item for each record, filled by fill(writer, item, record).
    template <typename Records, typename Fill>
    bool Items(const XmlNode& list, const ListRow& row, const Records& records, Fill fill) const {
        for (const auto& record : records) {
            const XmlNode item = Element(list, row.item);
            if (!item || !fill(*this, item, record)) {
                return false;
            }
        }
        return true;
    }

private:
    const std::string* FindName(const NewItem& row) const;

    CCommonXmlPxd& m_xml;
    const XMLPXD_FUNCLIST* m_functions;
    const std::map<unsigned int, std::string>& m_names;
};

// A step that writes a list, its items filled by fill(writer, item, record).
template <typename Records, typename Fill>
unsigned int WriteList(CCommonXmlPxd& xml, void* root, const ListRow& row, const Records& records,
                       Fill fill) {
    return ResultOf([&] {
        const ElementWriter writer(xml);
        const XmlNode list = writer.List(root, row);
        return list && writer.Items(list, row, records, fill);
    });
}

}  // namespace xmlpxd
