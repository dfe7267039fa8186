// An object of the XML layer for tests: bound to a parser, with what derived classes see
// made visible, and documents given as text.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "CostCountCommon/CommonXMLPxd.h"
#include "CostCountCommon/xmlpxd/XmlNode.h"
#include "tests/support/CountingParser.h"

using xmlpxd::XmlNode;

class BoundXml : public CCommonXmlPxd {
public:
    using CCommonXmlPxd::m_CommandKeys;
    using CCommonXmlPxd::m_FunctionsXmlPxd;
    using CCommonXmlPxd::m_XmlTagIDs;

    explicit BoundXml(const char* parser = COUNTING_PARSER) {
        EXPECT_TRUE(InitializeXmlPxd("settings", "/", parser, false));
        CountingParser::Reset();
    }

    // Owns a node that an operation gave.
    XmlNode Own(void* node) const { return {*m_FunctionsXmlPxd, node}; }
};

// A document and its root element for the time of a scope.
class OpenedText {
public:
    OpenedText(BoundXml& xml, std::string_view text) : m_xml(xml) {
        unsigned int err = 0;
        m_document = xml.m_FunctionsXmlPxd->CreateDocByBin(
            reinterpret_cast<const unsigned char*>(text.data()), text.size(), 0, &err);
        m_root = m_document == nullptr
                     ? nullptr
                     : xml.m_FunctionsXmlPxd->GetDocumentElement(m_document, &err);
        EXPECT_NE(nullptr, m_root) << text;
    }
    ~OpenedText() {
        m_xml.DeleteNode(m_root);
        m_xml.CloseXml(m_document);
    }
    OpenedText(const OpenedText&) = delete;
    OpenedText& operator=(const OpenedText&) = delete;

    void* Root() const { return m_root; }

private:
    BoundXml& m_xml;
    void* m_document = nullptr;
    void* m_root = nullptr;
};
