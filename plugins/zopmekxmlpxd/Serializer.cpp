#include "plugins/zopmekxmlpxd/Serializer.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

#include "plugins/zopmekxmlpxd/Entry.h"
#include "plugins/zopmekxmlpxd/Loading.h"

namespace {

// Deeper elements are indented like these: every line of a deep document would else be as long as
// it is deep.
constexpr size_t MAX_INDENTED_LEVELS = 6;
constexpr size_t INDENT = 4;
constexpr std::string_view LINE_START = "\n                        ";
static_assert(LINE_START.size() == 1 + INDENT * MAX_INDENTED_LEVELS);

// What may stand between elements for the eye only. A carriage return stood in a reference, so
// somebody meant it.
bool IsLayout(const char* text) {
    while (*text == ' ' || *text == '\n' || *text == '\t') {
        ++text;
    }
    return *text == '\0';
}

// Whether the element holds elements between which white space means nothing. Where there are only
// comments beside it, white space is a value.
bool MayBeLaidOut(pugi::xml_node element) {
    bool holdsElements = false;
    pugi::xml_node child = element.first_child();
    for (auto type = child.type(); type != pugi::node_null; type = child.type()) {
        if (type == pugi::node_cdata || (type == pugi::node_pcdata && !IsLayout(child.value()))) {
            return false;
        }
        holdsElements = holdsElements || type == pugi::node_element;
        child = child.next_sibling();
    }
    return holdsElements && std::string_view(element.attribute("xml:space").value()) != "preserve";
}

// Gathers text that is put together of many small pieces.
class Output {
public:
    explicit Output(const TextSink& sink) : m_sink(sink), m_block(BLOCK_SIZE) {}

    void Put(char piece) {
        if (m_used == BLOCK_SIZE) {
            Flush();
        }
        m_block[m_used++] = piece;
    }

    void Put(std::string_view piece) {
        if (piece.size() > BLOCK_SIZE - m_used) {
            Flush();
        }
        if (piece.size() > BLOCK_SIZE) {
            m_flushed += piece.size();
            m_sink(piece);
            return;
        }
        std::memcpy(m_block.data() + m_used, piece.data(), piece.size());
        m_used += piece.size();
    }

    void Flush() {
        m_flushed += m_used;
        m_sink({m_block.data(), std::exchange(m_used, 0)});
    }

    size_t Size() const { return m_flushed + m_used; }

private:
    static constexpr size_t BLOCK_SIZE = 32UL * 1024;

    const TextSink& m_sink;
    size_t m_flushed = 0;
    size_t m_used = 0;
    std::vector<char> m_block;
};

// The reference that stands for a character in text or, with `inAttribute`, in an attribute's
// value; empty for one that stands for itself. White space that a reader would change is among
// them.
constexpr std::string_view ReferenceFor(char character, bool inAttribute) {
    switch (character) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return inAttribute ? "" : "&gt;";
        case '"':
            return inAttribute ? "&quot;" : "";
        case '\r':
            return "&#13;";
        case '\n':
            return inAttribute ? "&#10;" : "";
        case '\t':
            return inAttribute ? "&#9;" : "";
        default:
            return "";
    }
}

// One flag per byte: whether a run of plain characters ends there. The terminator ends one too.
template <bool IN_ATTRIBUTE>
constexpr auto ENDS_RUN = [] {
    std::array<bool, 256> flags{};
    flags[0] = true;
    for (size_t byte = 1; byte < flags.size(); ++byte) {
        flags[byte] = !ReferenceFor(static_cast<char>(byte), IN_ATTRIBUTE).empty();
    }
    return flags;
}();

// The parser library's own writer recurses nowhere either, but it loses carriage returns in text
// and puts white space into text that stands beside elements.
class Serializer {
public:
    Serializer(Layout layout, XmlPxdError tooLarge, const TextSink& sink)
        : m_isIndenting(layout == Layout::INDENTED), m_tooLarge(tooLarge), m_out(sink) {}

    void Write(const pugi::xml_document& tree) {
        WriteDeclaration(tree);
        for (const pugi::xml_node node : tree.children()) {
            if (node.type() != pugi::node_declaration) {
                Put('\n');
                WriteTree(node);
            }
        }
        Put('\n');
        m_out.Flush();
    }

private:
    static constexpr size_t NOWHERE = SIZE_MAX;

    void WriteDeclaration(const pugi::xml_document& tree) {
        Put(R"(<?xml version="1.0" encoding="UTF-8")");
        for (const pugi::xml_node node : tree.children()) {
            if (node.type() == pugi::node_declaration && node.attribute("standalone")) {
                WriteAttribute(node.attribute("standalone"));
            }
        }
        Put("?>");
    }

    // Without recursion: a document may be deeper than the stack. Types are handed on because each
    // question to a node is a call into the parser library.
    void WriteTree(pugi::xml_node node) {
        for (pugi::xml_node_type type = node.type(); type != pugi::node_null; type = node.type()) {
            if (WriteStart(node, type)) {
                node = node.first_child();
                ++m_depth;
                continue;
            }
            pugi::xml_node next = NextBelowTop(node);
            while (m_depth > 0 && next.type() == pugi::node_null) {
                node = node.parent();
                --m_depth;
                WriteEnd(node);
                next = NextBelowTop(node);
            }
            Require(m_out.Size() < MAX_DOCUMENT_SIZE, m_tooLarge);
            node = next;
        }
    }

    pugi::xml_node NextBelowTop(pugi::xml_node node) const {
        return m_depth > 0 ? node.next_sibling() : pugi::xml_node();
    }

    // Whether there is more to write inside the node, and then its end.
    bool WriteStart(pugi::xml_node node, pugi::xml_node_type type) {
        const bool isLaidOut = m_isIndenting && m_verbatimDepth == NOWHERE;
        if (isLaidOut && (type == pugi::node_pcdata || type == pugi::node_cdata)) {
            return false;
        }
        if (isLaidOut && m_depth > 0) {
            WriteSeparation(node, type);
        }
        if (type != pugi::node_element) {
            WriteLeaf(node, type);
            return false;
        }
        const std::string_view name = node.name();
        Put('<', name);
        for (pugi::xml_attribute attribute = node.first_attribute(); attribute;
             attribute = attribute.next_attribute()) {
            WriteAttribute(attribute);
        }
        const pugi::xml_node child = node.first_child();
        const pugi::xml_node_type childType = child.type();
        if (childType == pugi::node_null) {
            Put("/>");
            return false;
        }
        Put('>');
        // Most elements hold one text.
        if (childType == pugi::node_pcdata && !child.next_sibling()) {
            WriteEscaped<false>(child.value());
            Put("</", name, '>');
            return false;
        }
        if (isLaidOut && !MayBeLaidOut(node)) {
            m_verbatimDepth = m_depth;
        }
        return true;
    }

    void WriteEnd(pugi::xml_node element) {
        if (m_isIndenting && m_verbatimDepth == NOWHERE) {
            WriteLineStart();
        }
        if (m_verbatimDepth == m_depth) {
            m_verbatimDepth = NOWHERE;
        }
        Put("</", element.name(), '>');
    }

    void WriteLeaf(pugi::xml_node node, pugi::xml_node_type type) {
        switch (type) {
            case pugi::node_pcdata:
                WriteEscaped<false>(node.value());
                break;
            case pugi::node_cdata:
                Put("<![CDATA[", node.value(), "]]>");
                break;
            case pugi::node_comment:
                Put("<!--", node.value(), "-->");
                break;
            case pugi::node_pi:
                Put("<?", node.name(), *node.value() == '\0' ? "" : " ", node.value(), "?>");
                break;
            case pugi::node_doctype:
                Put("<!DOCTYPE ", node.value(), '>');
                break;
            default:  // elements are written apart, and there is nothing else
                break;
        }
    }

    void WriteAttribute(pugi::xml_attribute attribute) {
        Put(' ', attribute.name(), "=\"");
        WriteEscaped<true>(attribute.value());
        Put('"');
    }

    template <typename... Pieces>
    void Put(const Pieces&... pieces) {
        (m_out.Put(pieces), ...);
    }

    template <bool IN_ATTRIBUTE>
    void WriteEscaped(const char* text) {
        while (true) {
            const char* end = text;
            while (!ENDS_RUN<IN_ATTRIBUTE>[static_cast<unsigned char>(*end)]) {
                ++end;
            }
            m_out.Put({text, static_cast<size_t>(end - text)});
            if (*end == '\0') {
                return;
            }
            m_out.Put(ReferenceFor(*end, IN_ATTRIBUTE));
            text = end + 1;
        }
    }

    // Keeps what a person did with the lines: a comment stays on the line that it ends, and an
    // empty line stays.
    void WriteSeparation(pugi::xml_node node, pugi::xml_node_type type) {
        const std::string_view space = node.previous_sibling().value();
        const auto lineFeeds = std::count(space.begin(), space.end(), '\n');
        if (type != pugi::node_element && lineFeeds == 0 && IsLayout(space.data()) &&
            !space.empty()) {
            Put(space);
            return;
        }
        if (lineFeeds > 1 && IsLayout(space.data())) {
            Put('\n');
        }
        WriteLineStart();
    }

    void WriteLineStart() {
        Put(LINE_START.substr(0, 1 + INDENT * std::min(m_depth, MAX_INDENTED_LEVELS)));
    }

    const bool m_isIndenting;
    const XmlPxdError m_tooLarge;
    Output m_out;
    size_t m_depth = 0;
    // That of the outermost element whose contents are written as they are.
    size_t m_verbatimDepth = NOWHERE;
};

}  // namespace

void Serialize(const Document& document, Layout layout, XmlPxdError tooLarge,
               const TextSink& sink) {
    Serializer(layout, tooLarge, sink).Write(document.m_tree);
}

std::string Serialized(const Document& document, Layout layout, XmlPxdError tooLarge) {
    std::string text;
    Serialize(document, layout, tooLarge, [&text](std::string_view piece) { text.append(piece); });
    return text;
}
