#include "plugins/zopmekxmlpxd/Serializer.h"

#include <algorithm>
#include <string_view>

#include "plugins/zopmekxmlpxd/Entry.h"
#include "plugins/zopmekxmlpxd/Loading.h"

namespace {

// Deeper elements are indented like these: every line of a deep document would else be as long as
// it is deep.
constexpr size_t MAX_INDENTED_LEVELS = 8;
constexpr std::string_view INDENTATION = "                ";
static_assert(INDENTATION.size() == 2 * MAX_INDENTED_LEVELS);

// What may stand between elements for the eye only. A carriage return stood in a reference, so
// somebody meant it.
bool IsLayout(std::string_view text) {
    return text.find_first_not_of(" \t\n") == std::string_view::npos;
}

// Whether the element holds other nodes between which white space means nothing.
bool MayBeLaidOut(pugi::xml_node element) {
    bool holdsNodes = false;
    for (const pugi::xml_node child : element.children()) {
        if (child.type() == pugi::node_cdata ||
            (child.type() == pugi::node_pcdata && !IsLayout(child.value()))) {
            return false;
        }
        holdsNodes = holdsNodes || !IsText(child);
    }
    return holdsNodes && std::string_view(element.attribute("xml:space").value()) != "preserve";
}

// The parser library's own writer recurses nowhere either, but it loses carriage returns in text
// and puts white space into text that stands beside elements.
class Serializer {
public:
    Serializer(Layout layout, XmlPxdError tooLarge)
        : m_isIndenting(layout == Layout::INDENTED), m_tooLarge(tooLarge) {}

    std::string Write(const pugi::xml_document& tree) {
        WriteDeclaration(tree);
        for (const pugi::xml_node node : tree.children()) {
            if (node.type() != pugi::node_declaration) {
                m_out += '\n';
                WriteTree(node);
            }
        }
        m_out += '\n';
        return std::move(m_out);
    }

private:
    void WriteDeclaration(const pugi::xml_document& tree) {
        m_out = R"(<?xml version="1.0" encoding="UTF-8")";
        for (const pugi::xml_node node : tree.children()) {
            if (node.type() == pugi::node_declaration && node.attribute("standalone")) {
                WriteAttribute(node.attribute("standalone"));
            }
        }
        m_out += "?>";
    }

    // Without recursion: a document may be deeper than the stack.
    void WriteTree(pugi::xml_node top) {
        for (pugi::xml_node node = top;;) {
            if (WriteStart(node)) {
                node = node.first_child();
                ++m_depth;
                continue;
            }
            while (node != top && !node.next_sibling()) {
                node = node.parent();
                --m_depth;
                WriteEnd(node);
            }
            Require(m_out.size() < MAX_DOCUMENT_SIZE, m_tooLarge);
            if (node == top) {
                return;
            }
            node = node.next_sibling();
        }
    }

    // Whether there is more to write inside the node, and then its end.
    bool WriteStart(pugi::xml_node node) {
        const bool isLaidOut = m_isIndenting && !m_verbatim;
        if (isLaidOut && IsText(node)) {
            return false;
        }
        if (isLaidOut && m_depth > 0) {
            WriteLineBreak();
        }
        if (node.type() != pugi::node_element) {
            WriteLeaf(node);
            return false;
        }
        m_out.append("<").append(node.name());
        for (const pugi::xml_attribute attribute : node.attributes()) {
            WriteAttribute(attribute);
        }
        m_out += node.first_child() ? ">" : "/>";
        if (isLaidOut && node.first_child() && !MayBeLaidOut(node)) {
            m_verbatim = node;
        }
        return static_cast<bool>(node.first_child());
    }

    void WriteEnd(pugi::xml_node element) {
        if (m_isIndenting && !m_verbatim) {
            WriteLineBreak();
        }
        if (m_verbatim == element) {
            m_verbatim = {};
        }
        m_out.append("</").append(element.name()).append(">");
    }

    void WriteLeaf(pugi::xml_node node) {
        switch (node.type()) {
            case pugi::node_pcdata:
                WriteEscaped(node.value(), false);
                break;
            case pugi::node_cdata:
                m_out.append("<![CDATA[").append(node.value()).append("]]>");
                break;
            case pugi::node_comment:
                m_out.append("<!--").append(node.value()).append("-->");
                break;
            case pugi::node_pi:
                m_out.append("<?").append(node.name());
                m_out.append(*node.value() == '\0' ? "" : " ").append(node.value()).append("?>");
                break;
            case pugi::node_doctype:
                m_out.append("<!DOCTYPE ").append(node.value()).append(">");
                break;
            default:  // elements are written apart, and there is nothing else
                break;
        }
    }

    void WriteAttribute(pugi::xml_attribute attribute) {
        m_out.append(" ").append(attribute.name()).append("=\"");
        WriteEscaped(attribute.value(), true);
        m_out += '"';
    }

    void WriteEscaped(std::string_view text, bool inAttribute) {
        const auto isSpecial = [inAttribute](char c) {
            return c == '&' || c == '<' || c == '\r' ||
                   (inAttribute ? c == '"' || c == '\n' || c == '\t' : c == '>');
        };
        auto rest = text.begin();
        while (true) {
            const auto special = std::find_if(rest, text.end(), isSpecial);
            m_out.append(rest, special);
            if (special == text.end()) {
                return;
            }
            WriteReference(*special);
            rest = special + 1;
        }
    }

    void WriteReference(char character) {
        switch (character) {
            case '&':
                m_out += "&amp;";
                break;
            case '<':
                m_out += "&lt;";
                break;
            case '>':
                m_out += "&gt;";
                break;
            case '"':
                m_out += "&quot;";
                break;
            default:  // white space that a reader would change
                m_out.append("&#").append(std::to_string(static_cast<int>(character))).append(";");
                break;
        }
    }

    void WriteLineBreak() {
        m_out += '\n';
        m_out.append(INDENTATION.substr(0, 2 * std::min(m_depth, MAX_INDENTED_LEVELS)));
    }

    const bool m_isIndenting;
    const XmlPxdError m_tooLarge;
    std::string m_out;
    size_t m_depth = 0;
    // The outermost element whose contents are written as they are; none outside of one.
    pugi::xml_node m_verbatim;
};

}  // namespace

std::string Serialized(const Document& document, Layout layout, XmlPxdError tooLarge) {
    return Serializer(layout, tooLarge).Write(document.m_tree);
}
