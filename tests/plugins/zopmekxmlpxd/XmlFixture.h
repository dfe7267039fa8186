// A loaded parser plug-in with handles that give themselves back.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "tests/support/XmlParserModule.h"

using Handle = std::unique_ptr<void, std::function<void(void*)>>;

struct XmlParser {
    explicit XmlParser(const char* path = XML_PARSER) : entries(LoadXmlParser(path)) {}

    Handle Node(PNODE node) const { return {node, entries.DeleteNode}; }
    Handle Document(PDOC document) const { return {document, entries.DeleteDoc}; }

    // Null, with the reason in err, for text that is refused.
    Handle Parse(const std::string& text) {
        return Document(entries.CreateDocByBin(reinterpret_cast<const unsigned char*>(text.data()),
                                               text.size(), 0, &err));
    }
    Handle Root(const Handle& document) {
        return Node(entries.GetDocumentElement(document.get(), &err));
    }
    Handle Child(const Handle& element) { return Node(entries.GetFirstChild(element.get(), &err)); }

    // One of the four entries that give a text.
    std::string Text(unsigned long (*entry)(PNODE, char*, unsigned long, unsigned int*),
                     const Handle& node) {
        const unsigned long length = entry(node.get(), nullptr, 0, &err);
        if (length == XMLPXD_NO_LENGTH) {
            return "error";
        }
        std::string text(length + 1, '?');
        EXPECT_EQ(length, entry(node.get(), text.data(), text.size(), &err));
        EXPECT_EQ('\0', text.back());
        text.pop_back();
        return text;
    }
    std::string Name(const Handle& element) { return Text(entries.GetElementName, element); }
    std::string Value(const Handle& element) { return Text(entries.GetElementText, element); }

    // The document as its block, or "error".
    std::string Block(const Handle& document) {
        const int size = entries.GetXMLandAppDataBin(document.get(), nullptr, 0, &err);
        if (size < 0) {
            return "error";
        }
        std::string block(static_cast<size_t>(size), '?');
        EXPECT_EQ(size, entries.GetXMLandAppDataBin(document.get(),
                                                    reinterpret_cast<unsigned char*>(block.data()),
                                                    block.size(), &err));
        return block;
    }

    XMLPXD_FUNCLIST entries;
    unsigned int err = 4711;
};
