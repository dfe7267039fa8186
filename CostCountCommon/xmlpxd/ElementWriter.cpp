#include "CostCountCommon/xmlpxd/ElementWriter.h"

#include <algorithm>

#include "CostCountCommon/xmlpxd/ChildElements.h"
#include "CostCountCommon/xmlpxd/Print.h"

namespace xmlpxd {

XmlNode ElementWriter::List(void* root, const ListRow& row) const {
    return RequiredChild(m_xml, m_functions, root, row.tag, row.missing);
}

const std::string* ElementWriter::NameOf(unsigned int tag) const {
    const auto found = m_names.find(tag);
    return found == m_names.end() ? nullptr : &found->second;
}

const std::string* ElementWriter::FindName(const NewItem& row) const {
    const std::string* name = NameOf(row.tag);
    if (name == nullptr) {
        Print("%s", row.noTag);
    }
    return name;
}

XmlNode ElementWriter::Element(const XmlNode& parent, const NewItem& row) const {
    const std::string* name = FindName(row);
    if (name == nullptr) {
        return {};
    }
    XmlNode element = NewElement(*m_functions, parent.Get(), *name);
    if (!element) {
        Print("%s", row.notWritten);
    }
    return element;
}

XmlNode ElementWriter::Text(const XmlNode& parent, const NewItem& row, const std::string& text,
                            XmlPxdValueKind kind) const {
    const std::string* name = FindName(row);
    if (name == nullptr) {
        return {};
    }
    XmlNode element = NewElement(*m_functions, parent.Get(), *name, text, kind);
    if (!element) {
        Print("%s", row.notWritten);
    }
    return element;
}

bool ElementWriter::Attribute(const XmlNode& element, const NewItem& row,
                              const std::string& value) const {
    const std::string* name = FindName(row);
    if (name == nullptr) {
        return false;
    }
    if (SetAttribute(*m_functions, element.Get(), *name, value) != XMLPXD_OK) {
        Print("%s", row.notWritten);
        return false;
    }
    return true;
}

bool ElementWriter::Name(const XmlNode& parent, const NamesRow& row, const std::string& name,
                         const std::string& language) const {
    const XmlNode element = Text(parent, row.name, name, XMLPXD_TYPED_TEXT);
    return element && Attribute(element, row.lang, language);
}

bool ElementWriter::Names(const XmlNode& parent, const NamesRow& row,
                          const std::map<std::string, std::string>& names) const {
    return std::all_of(names.begin(), names.end(), [&](const auto& entry) {
        return Name(parent, row, entry.second, entry.first);
    });
}

}  // namespace xmlpxd
