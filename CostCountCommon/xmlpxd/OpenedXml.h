// Documents that are open for the time of a scope. Both give the root element back before its
// document goes, as the parser plug-in asks.
#pragma once

#include <string>

#include "CostCountCommon/CommonXMLPxd.h"

namespace xmlpxd {

// A file that is only read.
class OpenedXml {
public:
    OpenedXml(CCommonXmlPxd& xml, const std::string& path)
        : m_xml(xml), m_root(xml.OpenXml(path, &m_document)) {}
    ~OpenedXml() {
        m_xml.DeleteNode(m_root);
        m_xml.CloseXml(m_document);
    }
    OpenedXml(const OpenedXml&) = delete;
    OpenedXml& operator=(const OpenedXml&) = delete;

    // Null when the file could not be opened.
    void* Root() const { return m_root; }

private:
    CCommonXmlPxd& m_xml;
    void* m_document = nullptr;
    void* m_root;
};

enum class XmlSource { PATH, TEMPLATE };

// The object's own document: a file, or a template among the core plug-in's resources.
class CurrentXml {
public:
    CurrentXml(CCommonXmlPxd& xml, const std::string& path, XmlSource source)
        : m_xml(xml), m_root(xml.OpenXml(path, source == XmlSource::TEMPLATE)) {}
    ~CurrentXml() {
        m_xml.DeleteNode(m_root);
        if (!m_leaveOpen) {
            m_xml.CloseXml();
        }
    }
    CurrentXml(const CurrentXml&) = delete;
    CurrentXml& operator=(const CurrentXml&) = delete;

    // Null when the document could not be opened.
    void* Root() const { return m_root; }
    // Leaves the document to the object, which closes it when it opens the next or ends.
    void LeaveOpen() { m_leaveOpen = true; }

private:
    CCommonXmlPxd& m_xml;
    void* m_root;
    bool m_leaveOpen = false;
};

}  // namespace xmlpxd
