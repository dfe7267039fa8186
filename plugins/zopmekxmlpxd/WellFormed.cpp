#include "plugins/zopmekxmlpxd/WellFormed.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "compatible/Ascii.h"
#include "plugins/zopmekxmlpxd/TextChecks.h"

namespace {

constexpr std::string_view ENTITIES[] = {"amp", "apos", "gt", "lt", "quot"};

// The number of a character reference without its "&#" and ";", or 0, which is no character.
char32_t ReferredCharacter(std::string_view digits) {
    const bool hexadecimal = digits.starts_with('x');
    if (hexadecimal) {
        digits.remove_prefix(1);
    }
    char32_t number = 0;
    for (const char digit : digits) {
        const char lower = AsciiLower(digit);
        const bool isLetter = hexadecimal && lower >= 'a' && lower <= 'f';
        if (!isLetter && (digit < '0' || digit > '9')) {
            return 0;
        }
        number = number * (hexadecimal ? 16 : 10) +
                 static_cast<char32_t>(isLetter ? lower - 'a' + 10 : digit - '0');
        if (number > 0x10FFFF) {
            return 0;
        }
    }
    return number;
}

bool IsReference(std::string_view name) {
    return name.starts_with('#')
               ? IsXmlCharacter(ReferredCharacter(name.substr(1)))
               : std::find(std::begin(ENTITIES), std::end(ENTITIES), name) != std::end(ENTITIES);
}

// The position of the first reference that is not known, or npos.
size_t FindUnknownReference(std::string_view text) {
    for (size_t at = text.find('&'); at != std::string_view::npos; at = text.find('&', at + 1)) {
        const size_t end = text.find(';', at);
        if (end == std::string_view::npos || !IsReference(text.substr(at + 1, end - at - 1))) {
            return at;
        }
    }
    return std::string_view::npos;
}

bool AreReferencesKnown(std::string_view text) {
    return FindUnknownReference(text) == std::string_view::npos;
}

// Reads through the text once. Each function takes one thing of the grammar and tells whether it
// was there.
class Reader {
public:
    explicit Reader(std::string_view text) : m_text(text) {}

    bool Document(std::string_view encoding) {
        if (!Declaration(encoding)) {
            return false;
        }
        while (m_at < m_text.size()) {
            if (!(m_text[m_at] == '<' ? Markup() : Text())) {
                return false;
            }
        }
        return m_hadRoot && m_depth == 0;
    }

    // How far it came.
    size_t Position() const { return m_at; }

private:
    bool Take(std::string_view token) {
        if (!m_text.substr(m_at).starts_with(token)) {
            return false;
        }
        m_at += token.size();
        return true;
    }

    bool TakePast(std::string_view token) {
        const size_t found = m_text.find(token, m_at);
        if (found == std::string_view::npos) {
            return false;
        }
        m_at = found + token.size();
        return true;
    }

    bool Space() {
        const size_t start = m_at;
        while (m_at < m_text.size() && IsXmlSpace(m_text[m_at])) {
            ++m_at;
        }
        return m_at > start;
    }

    bool Name(std::string_view* name) {
        *name = m_text.substr(m_at, NameLength(m_text.substr(m_at)));
        m_at += name->size();
        return !name->empty();
    }

    bool Equals() {
        Space();
        const bool taken = Take("=");
        Space();
        return taken;
    }

    bool Quoted(std::string_view* value) {
        if (m_at == m_text.size() || (m_text[m_at] != '"' && m_text[m_at] != '\'')) {
            return false;
        }
        const size_t start = m_at + 1;
        const size_t end = m_text.find(m_text[m_at], start);
        if (end == std::string_view::npos) {
            return false;
        }
        *value = m_text.substr(start, end - start);
        m_at = end + 1;
        return true;
    }

    // One of the settings of a declaration, which come in a fixed order after white space.
    bool Setting(std::string_view name, std::string_view* value) {
        const size_t start = m_at;
        if (Space() && Take(name)) {
            return Equals() && Quoted(value);
        }
        m_at = start;
        return true;
    }

    bool Declaration(std::string_view encoding) {
        if (!m_text.starts_with("<?xml") || m_text.size() < 6 || !IsXmlSpace(m_text[5])) {
            return true;
        }
        m_at = 5;
        std::string_view version;
        std::string_view named = encoding;
        std::string_view standalone = "no";
        if (!Setting("version", &version) || !Setting("encoding", &named) ||
            !Setting("standalone", &standalone)) {
            return false;
        }
        Space();
        return Take("?>") && version.starts_with("1.") && version.size() > 2 &&
               version.find_first_not_of("0123456789", 2) == std::string_view::npos &&
               IsEqualAsciiNoCase(named, encoding) && (standalone == "yes" || standalone == "no");
    }

    bool Markup() {
        if (Take("<!--")) {
            return Comment();
        }
        if (Take("<![CDATA[")) {
            return m_depth > 0 && TakePast("]]>");
        }
        if (Take("<!DOCTYPE")) {
            return DocumentType();
        }
        if (Take("<?")) {
            return Instruction();
        }
        return Take("</") ? EndTag() : Take("<") && StartTag();
    }

    bool Comment() { return TakePast("--") && Take(">"); }

    bool Instruction() {
        std::string_view target;
        return Name(&target) && !IsEqualAsciiNoCase(target, "xml") &&
               (Take("?>") || (Space() && TakePast("?>")));
    }

    bool Text() {
        const size_t end = std::min(m_text.find('<', m_at), m_text.size());
        const std::string_view text = m_text.substr(m_at, end - m_at);
        const size_t wrong = m_depth == 0 ? text.find_first_not_of(" \t\n\r")
                                          : std::min(text.find("]]>"), FindUnknownReference(text));
        m_at = wrong == std::string_view::npos ? end : m_at + wrong;
        return wrong == std::string_view::npos;
    }

    bool StartTag() {
        std::string_view name;
        if ((m_depth == 0 && m_hadRoot) || !Name(&name)) {
            return false;
        }
        m_hadRoot = true;
        m_attributes.clear();
        while (true) {
            const bool separated = Space();
            if (Take(">")) {
                ++m_depth;
                break;
            }
            if (Take("/>")) {
                break;
            }
            if (!separated || !Attribute()) {
                return false;
            }
        }
        std::sort(m_attributes.begin(), m_attributes.end());
        return std::adjacent_find(m_attributes.begin(), m_attributes.end()) == m_attributes.end();
    }

    bool Attribute() {
        std::string_view name;
        std::string_view value;
        if (!Name(&name) || !Equals() || !Quoted(&value)) {
            return false;
        }
        m_attributes.push_back(name);
        return value.find('<') == std::string_view::npos && AreReferencesKnown(value);
    }

    bool EndTag() {
        std::string_view name;
        if (m_depth == 0 || !Name(&name)) {
            return false;
        }
        --m_depth;
        Space();
        return Take(">");
    }

    // What a document type declares is only read over, in the units that its end is told by.
    bool DocumentType() {
        std::string_view part;
        if (m_hadRoot || std::exchange(m_hadDocumentType, true) || !Space() || !Name(&part)) {
            return false;
        }
        while (!Take(">")) {
            if (Take("[")) {
                if (!InternalSubset()) {
                    return false;
                }
            } else if (!PartOfDeclaration()) {
                return false;
            }
        }
        return true;
    }

    bool InternalSubset() {
        while (!Take("]")) {
            bool taken = false;
            if (Take("<!--")) {
                taken = Comment();
            } else if (Take("<?")) {
                taken = Instruction();
            } else if (Take("<!")) {
                taken = MarkupDeclaration();
            } else {
                taken = Space() || ParameterReference();
            }
            if (!taken) {
                return false;
            }
        }
        return true;
    }

    bool MarkupDeclaration() {
        while (!Take(">")) {
            if (!PartOfDeclaration()) {
                return false;
            }
        }
        return true;
    }

    bool ParameterReference() {
        std::string_view name;
        return Take("%") && Name(&name) && Take(";");
    }

    // A quoted text, or one byte that opens nothing.
    bool PartOfDeclaration() {
        constexpr std::string_view OPENING = "<[]'\"";
        std::string_view text;
        if (m_at < m_text.size() && OPENING.find(m_text[m_at]) == std::string_view::npos) {
            ++m_at;
            return true;
        }
        return Quoted(&text);
    }

    std::string_view m_text;
    size_t m_at = 0;
    size_t m_depth = 0;
    bool m_hadRoot = false;
    bool m_hadDocumentType = false;
    std::vector<std::string_view> m_attributes;
};

}  // namespace

bool IsWellFormed(std::string_view text, std::string_view encoding) {
    return FindIllFormed(text, encoding) == std::string_view::npos;
}

size_t FindIllFormed(std::string_view text, std::string_view encoding) {
    Reader reader(text);
    return reader.Document(encoding) ? std::string_view::npos : reader.Position();
}
