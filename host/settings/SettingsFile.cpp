#include "host/settings/SettingsFile.h"

#include <cerrno>
#include <utility>

#include "host/common/Errors.h"
#include "host/settings/SaveFault.h"

namespace tallyquist {
namespace {

// For a call that was given the value.
void Require(unsigned int err) {
    if (err == XMLPXD_NOT_HELD_BY_XML) {
        throw UsageError("the value holds a character that an XML file cannot hold");
    }
    RequireXml(err);
}

}  // namespace

SettingsFile::SettingsFile(XmlLayer& xml, const SettingsKind& kind, XmlFile file)
    : m_xml(&xml), m_kind(kind), m_file(std::move(file)) {}

std::optional<SettingsFile> SettingsFile::Open(XmlLayer& xml, const SettingsKind& kind,
                                               const std::string& path) {
    auto file = OpenXmlFile(xml, kind.root, path);
    return file ? std::optional(SettingsFile(xml, kind, std::move(*file))) : std::nullopt;
}

std::optional<std::string> SettingsFile::Value(unsigned int tagId) const {
    std::string value;
    unsigned int err = XMLPXD_OK;
    if (!m_xml->GetElementValueWithSearch(m_file.root.Get(), static_cast<int>(tagId), false, &value,
                                          &err)) {
        return std::nullopt;
    }
    return value;
}

bool SettingsFile::IsHidden(unsigned int tagId) const {
    unsigned int err = XMLPXD_OK;
    const XmlNode found(m_xml->Parser(), m_xml->SearchElement(m_file.root.Get(), tagId, &err));
    const XmlNode child(m_xml->Parser(),
                        m_xml->SearchParentElement(m_file.root.Get(), tagId, &err));
    return !found && child;
}

void SettingsFile::Set(unsigned int tagId, const std::string& value) {
    const XMLPXD_FUNCLIST& parser = m_xml->Parser();
    unsigned int err = XMLPXD_OK;
    const XmlNode element(parser, m_xml->SearchElement(m_file.root.Get(), tagId, &err));
    if (element) {
        Require(xmlpxd::SetText(parser, element.Get(), value, XMLPXD_MACHINE_TEXT));
        return;
    }
    const XmlNode hidden(parser, m_xml->SearchParentElement(m_file.root.Get(), tagId, &err));
    if (hidden) {
        Require(parser.RemoveElement(hidden.Get()));
    }
    Add(tagId, value);
}

// The first child element that is no setting, which may end what programs look at.
XmlNode SettingsFile::FirstStranger() const {
    const XMLPXD_FUNCLIST& parser = m_xml->Parser();
    unsigned int err = XMLPXD_OK;
    XmlNode child =
        xmlpxd::NodeFrom(parser, &XMLPXD_FUNCLIST::GetFirstChild, m_file.root.Get(), &err);
    while (child) {
        const unsigned int id = m_xml->GetElementID(m_xml->NameOf(child), false);
        if (id < m_kind.first || id > m_kind.last) {
            break;
        }
        child = xmlpxd::NodeFrom(parser, &XMLPXD_FUNCLIST::GetNextSibling, child.Get(), &err);
    }
    return child;
}

void SettingsFile::Add(unsigned int tagId, const std::string& value) {
    const XMLPXD_FUNCLIST& parser = m_xml->Parser();
    const XmlNode before = FirstStranger();
    unsigned int err = XMLPXD_OK;
    const XmlNode added(parser, parser.CreateElementWithValue(
                                    m_file.root.Get(), m_xml->Names().at(tagId).c_str(),
                                    value.c_str(), before.Get(), XMLPXD_MACHINE_TEXT, &err));
    Require(err);
}

void SettingsFile::Save(const std::string& path) const {
    errno = 0;
    if (m_xml->Parser().Save(m_file.document.Get(), path.c_str()) != XMLPXD_OK) {
        throw CannotWrite(path, errno);
    }
}

}  // namespace tallyquist
