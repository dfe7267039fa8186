#include "host/settings/SettingsFile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include "host/common/Errors.h"
#include "host/common/Printable.h"
#include "host/settings/SaveFault.h"
#include "host/settings/XmlFault.h"

namespace tallyquist {
namespace {

[[noreturn]] void FailToRead(const std::string& path, unsigned int err, int reason) {
    const std::string shown = Visible(path);
    switch (err) {
        case XMLPXD_NOT_WELL_FORMED:
            throw CommandError(DescribeXmlFault(path));
        case XMLPXD_OUT_OF_MEMORY:
            throw CommandError("not enough memory for " + shown);
        default:
            throw CommandError("cannot read " + shown + ": " +
                               (reason != 0 ? std::strerror(reason) : "it is not a regular file"));
    }
}

// For failures that no file or value explains.
void Require(unsigned int err) {
    if (err == XMLPXD_NOT_HELD_BY_XML) {
        throw UsageError("the value holds a character that an XML file cannot hold");
    }
    if (err != XMLPXD_OK) {
        throw CommandError("the XML parser plug-in failed with error " + std::to_string(err));
    }
}

std::string NameOf(const XMLPXD_FUNCLIST& parser, const XmlNode& element) {
    std::string name;
    unsigned int err = XMLPXD_OK;
    xmlpxd::ReadText(parser, &XMLPXD_FUNCLIST::GetElementName, element.Get(), &name, &err);
    Require(err);
    return name;
}

}  // namespace

SettingsFile::SettingsFile(XmlLayer& xml, const SettingsKind& kind, XmlDocument document,
                           XmlNode root)
    : m_xml(&xml), m_kind(kind), m_document(std::move(document)), m_root(std::move(root)) {}

std::optional<SettingsFile> SettingsFile::Open(XmlLayer& xml, const SettingsKind& kind,
                                               const std::string& path) {
    std::error_code error;
    if (!std::filesystem::exists(path, error) && !error) {
        return std::nullopt;
    }
    const XMLPXD_FUNCLIST& parser = xml.Parser();
    unsigned int err = XMLPXD_OK;
    errno = 0;
    XmlDocument document(parser, parser.CreateDocByFile(path.c_str(), &err));
    if (!document) {
        FailToRead(path, err, errno);
    }
    XmlNode root =
        xmlpxd::NodeFrom(parser, &XMLPXD_FUNCLIST::GetDocumentElement, document.Get(), &err);
    Require(err);
    const std::string& wanted = xml.Names().at(kind.root);
    const std::string name = NameOf(parser, root);
    if (name != wanted) {
        throw CommandError(Visible(path) + ": the root element is " + Printable(name) + ", not " +
                           Printable(wanted));
    }
    return SettingsFile(xml, kind, std::move(document), std::move(root));
}

std::optional<std::string> SettingsFile::Value(unsigned int tagId) const {
    std::string value;
    unsigned int err = XMLPXD_OK;
    if (!m_xml->GetElementValueWithSearch(m_root.Get(), static_cast<int>(tagId), false, &value,
                                          &err)) {
        return std::nullopt;
    }
    return value;
}

bool SettingsFile::IsHidden(unsigned int tagId) const {
    unsigned int err = XMLPXD_OK;
    const XmlNode found(m_xml->Parser(), m_xml->SearchElement(m_root.Get(), tagId, &err));
    const XmlNode child(m_xml->Parser(), m_xml->SearchParentElement(m_root.Get(), tagId, &err));
    return !found && child;
}

void SettingsFile::Set(unsigned int tagId, const std::string& value) {
    const XMLPXD_FUNCLIST& parser = m_xml->Parser();
    unsigned int err = XMLPXD_OK;
    const XmlNode element(parser, m_xml->SearchElement(m_root.Get(), tagId, &err));
    if (element) {
        Require(xmlpxd::SetText(parser, element.Get(), value, XMLPXD_MACHINE_TEXT));
        return;
    }
    const XmlNode hidden(parser, m_xml->SearchParentElement(m_root.Get(), tagId, &err));
    if (hidden) {
        Require(parser.RemoveElement(hidden.Get()));
    }
    Add(tagId, value);
}

// The first child element that is no setting, which may end what programs look at.
XmlNode SettingsFile::FirstStranger() const {
    const XMLPXD_FUNCLIST& parser = m_xml->Parser();
    unsigned int err = XMLPXD_OK;
    XmlNode child = xmlpxd::NodeFrom(parser, &XMLPXD_FUNCLIST::GetFirstChild, m_root.Get(), &err);
    while (child) {
        const unsigned int id = m_xml->GetElementID(NameOf(parser, child), false);
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
                                    m_root.Get(), m_xml->Names().at(tagId).c_str(), value.c_str(),
                                    before.Get(), XMLPXD_MACHINE_TEXT, &err));
    Require(err);
}

void SettingsFile::Save(const std::string& path) const {
    errno = 0;
    if (m_xml->Parser().Save(m_document.Get(), path.c_str()) != XMLPXD_OK) {
        throw CannotWrite(path, errno);
    }
}

}  // namespace tallyquist
