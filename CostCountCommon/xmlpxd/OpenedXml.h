// Documents that are open for the time of a scope. Both give the root element back before its
// document goes, as the parser plug-in asks.
#pragma once

#include <string>

#include "CostCountCommon/CommonXMLPxd.h"

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

// A template of the core plug-in, as the object's own document.
class OpenedTemplate {
public:
    OpenedTemplate(CCommonXmlPxd& xml, const std::string& path)
        : m_xml(xml), m_root(xml.OpenXml(path, true)) {}
    ~OpenedTemplate() {
        m_xml.DeleteNode(m_root);
        m_xml.CloseXml();
    }
    OpenedTemplate(const OpenedTemplate&) = delete;
    OpenedTemplate& operator=(const OpenedTemplate&) = delete;

    // Null when the template could not be opened.
    void* Root() const { return m_root; }

private:
    CCommonXmlPxd& m_xml;
    void* m_root;
};
