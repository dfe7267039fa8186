#include "CostCountCommon/src/platform/linux/StringsFile.h"

#include <algorithm>
#include <cstddef>
#include <optional>

#include "compatible/Utf16.h"

namespace platform {
namespace {

constexpr char16_t REPLACEMENT_CHARACTER = 0xFFFD;

std::string Utf8Of(std::u16string text) {
    for (size_t at = 0; at < text.size(); ++at) {
        const bool isPair =
            IsHighSurrogate(text[at]) && at + 1 < text.size() && IsLowSurrogate(text[at + 1]);
        if (isPair) {
            ++at;
        } else if (IsHighSurrogate(text[at]) || IsLowSurrogate(text[at])) {
            text[at] = REPLACEMENT_CHARACTER;
        }
    }
    std::string utf8;
    return Utf8FromUtf16(text, &utf8) ? utf8 : std::string();
}

// A last odd byte is left out.
std::u16string UnitsOf(std::string_view bytes, bool bigEndian) {
    std::u16string units;
    units.reserve(bytes.size() / 2);
    for (size_t at = 0; at + 1 < bytes.size(); at += 2) {
        const auto first = static_cast<unsigned char>(bytes[at]);
        const auto second = static_cast<unsigned char>(bytes[at + 1]);
        units += static_cast<char16_t>(bigEndian ? first << 8 | second : second << 8 | first);
    }
    return units;
}

std::u16string Decoded(std::string_view bytes) {
    constexpr std::string_view UTF8_MARK = "\xEF\xBB\xBF";
    constexpr std::string_view BIG_ENDIAN_MARK = "\xFE\xFF";
    constexpr std::string_view LITTLE_ENDIAN_MARK = "\xFF\xFE";
    if (bytes.starts_with(BIG_ENDIAN_MARK) || bytes.starts_with(LITTLE_ENDIAN_MARK)) {
        return UnitsOf(bytes.substr(2), bytes.starts_with(BIG_ENDIAN_MARK));
    }
    if (bytes.starts_with(UTF8_MARK)) {
        bytes.remove_prefix(UTF8_MARK.size());
    }
    std::u16string text;
    return Utf16FromUtf8(bytes, &text) ? text : std::u16string();
}

bool IsSpace(char16_t unit) {
    return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
}

bool IsWordUnit(char16_t unit) {
    return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'Z') ||
           (unit >= u'a' && unit <= u'z') ||
           std::u16string_view(u"_$/:.-").find(unit) != std::u16string_view::npos;
}

// The value of a digit in the base, or -1.
int DigitValue(char16_t unit, int base) {
    int value = -1;
    if (unit >= u'0' && unit <= u'9') {
        value = unit - u'0';
    } else if (unit >= u'A' && unit <= u'F') {
        value = unit - u'A' + 10;
    } else if (unit >= u'a' && unit <= u'f') {
        value = unit - u'a' + 10;
    }
    return value < base ? value : -1;
}

class Reader {
public:
    explicit Reader(std::u16string_view text) : m_rest(text) {}

    // A quoted text or a word; nothing when there is neither.
    std::optional<std::u16string> Text() {
        SkipSpaceAndComments();
        if (m_rest.empty()) {
            return std::nullopt;
        }
        const char16_t first = m_rest.front();
        return first == u'"' || first == u'\'' ? QuotedText() : Word();
    }

    bool Take(char16_t mark) {
        SkipSpaceAndComments();
        if (!m_rest.starts_with(mark)) {
            return false;
        }
        m_rest.remove_prefix(1);
        return true;
    }

private:
    void SkipSpaceAndComments() {
        for (;;) {
            if (m_rest.starts_with(u"/*")) {
                const size_t end = m_rest.find(u"*/", 2);
                m_rest.remove_prefix(end == std::u16string_view::npos ? m_rest.size() : end + 2);
            } else if (m_rest.starts_with(u"//")) {
                m_rest.remove_prefix(std::min(m_rest.find_first_of(u"\r\n"), m_rest.size()));
            } else if (!m_rest.empty() && IsSpace(m_rest.front())) {
                m_rest.remove_prefix(1);
            } else {
                return;
            }
        }
    }

    std::optional<std::u16string> Word() {
        size_t length = 0;
        while (length < m_rest.size() && IsWordUnit(m_rest[length])) {
            ++length;
        }
        if (length == 0) {
            return std::nullopt;
        }
        std::u16string word(m_rest.substr(0, length));
        m_rest.remove_prefix(length);
        return word;
    }

    std::optional<std::u16string> QuotedText() {
        const char16_t quote = Next();
        std::u16string text;
        while (!m_rest.empty()) {
            const char16_t unit = Next();
            if (unit == quote) {
                return text;
            }
            if (unit != u'\\') {
                text += unit;
            } else if (!m_rest.empty()) {
                text += Escaped();
            }
        }
        return std::nullopt;
    }

    // What stands after a backslash. A character without a meaning of its own means itself.
    char16_t Escaped() {
        constexpr std::u16string_view LETTERS = u"abfnrtv";
        constexpr std::u16string_view MEANINGS = u"\a\b\f\n\r\t\v";
        const char16_t unit = m_rest.front();
        if (DigitValue(unit, 8) >= 0) {
            return Number(8, 3);
        }
        m_rest.remove_prefix(1);
        if ((unit == u'U' || unit == u'u') && !m_rest.empty() &&
            DigitValue(m_rest.front(), 16) >= 0) {
            return Number(16, 4);
        }
        const size_t letter = LETTERS.find(unit);
        return letter == std::u16string_view::npos ? unit : MEANINGS[letter];
    }

    char16_t Number(int base, int digits) {
        int number = 0;
        for (; digits > 0 && !m_rest.empty() && DigitValue(m_rest.front(), base) >= 0; --digits) {
            number = number * base + DigitValue(Next(), base);
        }
        return static_cast<char16_t>(number);
    }

    char16_t Next() {
        const char16_t unit = m_rest.front();
        m_rest.remove_prefix(1);
        return unit;
    }

    std::u16string_view m_rest;
};

}  // namespace

std::map<std::string, std::string> ParseStringsFile(std::string_view bytes) {
    const std::u16string text = Decoded(bytes);
    Reader reader(text);
    std::map<std::string, std::string> table;
    for (;;) {
        const std::optional<std::u16string> key = reader.Text();
        const std::optional<std::u16string> value = key && reader.Take(u'=') ? reader.Text() : key;
        if (!value || !reader.Take(u';')) {
            return table;
        }
        table.insert_or_assign(Utf8Of(*key), Utf8Of(*value));
    }
}

}  // namespace platform
