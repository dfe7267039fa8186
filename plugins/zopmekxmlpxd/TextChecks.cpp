#include "plugins/zopmekxmlpxd/TextChecks.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

#include "compatible/Utf8.h"
#include "plugins/zopmekxmlpxd/Entry.h"

namespace {

constexpr std::string_view REPLACEMENT = "\xEF\xBF\xBD";  // U+FFFD

struct Range {
    char32_t first;
    char32_t last;
};

// The productions NameStartChar and NameChar of XML 1.0, fifth edition.
constexpr Range NAME_START[] = {
    {':', ':'},       {'A', 'Z'},       {'_', '_'},       {'a', 'z'},
    {0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},
    {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},
    {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF},
};
constexpr Range NAME_REST[] = {
    {'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040},
};

template <size_t COUNT>
constexpr bool IsIn(const Range (&ranges)[COUNT], char32_t character) {
    return std::any_of(std::begin(ranges), std::end(ranges), [character](const Range& range) {
        return character >= range.first && character <= range.last;
    });
}

// Every byte of a document is looked at: of the usual ones a table tells what they are.
template <typename Test>
constexpr std::array<bool, 256> TableOf(Test test) {
    std::array<bool, 256> table{};
    for (size_t byte = 0; byte < table.size(); ++byte) {
        table.at(byte) = test(static_cast<char32_t>(byte));
    }
    return table;
}

constexpr char32_t ASCII_END = 0x80;

constexpr auto IS_ASCII_OF_NAME = TableOf([](char32_t byte) {
    return byte < ASCII_END && (IsIn(NAME_START, byte) || IsIn(NAME_REST, byte));
});

// Controls, and the first byte of what is forbidden beyond them.
constexpr auto MAY_BE_FORBIDDEN =
    TableOf([](char32_t byte) { return (byte < ' ' && !IsXmlCharacter(byte)) || byte == 0xEF; });

bool Tells(const std::array<bool, 256>& table, char c) {
    return table[static_cast<unsigned char>(c)];
}

// The first character of text that is UTF-8 and not empty.
char32_t FirstCharacter(std::string_view text, size_t* length) {
    const auto lead = static_cast<unsigned char>(text.front());
    *length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    auto character = static_cast<char32_t>(*length == 1 ? lead : lead & (0x7F >> *length));
    for (size_t at = 1; at < *length; ++at) {
        character = (character << 6) | (static_cast<unsigned char>(text[at]) & 0x3F);
    }
    return character;
}

}  // namespace

size_t NameLength(std::string_view text) {
    size_t at = 0;
    while (at < text.size()) {
        if (at > 0 && Tells(IS_ASCII_OF_NAME, text[at])) {
            ++at;
            continue;
        }
        size_t length = 0;
        const char32_t character = FirstCharacter(text.substr(at), &length);
        if (!IsIn(NAME_START, character) && (at == 0 || !IsIn(NAME_REST, character))) {
            break;
        }
        at += length;
    }
    return at;
}

size_t FindForbidden(std::string_view text, size_t from) {
    for (size_t at = from; at < text.size(); ++at) {
        if (!Tells(MAY_BE_FORBIDDEN, text[at])) {
            continue;
        }
        // U+FFFE and U+FFFF; UTF-8 has no surrogates.
        if (text[at] != '\xEF' ||
            (text[at + 1] == '\xBF' && (text[at + 2] == '\xBE' || text[at + 2] == '\xBF'))) {
            return at;
        }
    }
    return std::string_view::npos;
}

const char* CheckedName(const char* name) {
    Require(name != nullptr, XMLPXD_INVALID_ARGUMENT);
    const std::string_view text = name;
    Require(!text.empty() && IsUtf8(text) && NameLength(text) == text.size(),
            XMLPXD_NOT_HELD_BY_XML);
    return name;
}

std::string CheckedValue(const char* value, unsigned int valueKind) {
    Require(value != nullptr && valueKind <= XMLPXD_TYPED_TEXT, XMLPXD_INVALID_ARGUMENT);
    std::string text = value;
    Require(IsUtf8(text), XMLPXD_NOT_HELD_BY_XML);
    size_t at = FindForbidden(text);
    if (at == std::string::npos) {
        return text;
    }
    Require(valueKind == XMLPXD_TYPED_TEXT, XMLPXD_NOT_HELD_BY_XML);
    std::string mended;
    size_t copied = 0;
    for (; at != std::string::npos; at = FindForbidden(text, copied)) {
        mended.append(text, copied, at - copied).append(REPLACEMENT);
        copied = at + (text[at] == '\xEF' ? 3 : 1);
    }
    return mended.append(text, copied);
}

bool IsFilling(const void* buffer, unsigned long size, size_t needed) {
    Require((buffer == nullptr) == (size == 0), XMLPXD_INVALID_ARGUMENT);
    Require(buffer == nullptr || size >= needed, XMLPXD_INVALID_ARGUMENT);
    return buffer != nullptr;
}

unsigned long CopyText(std::string_view text, char* buffer, unsigned long size) {
    if (IsFilling(buffer, size, text.size() + 1)) {
        std::memcpy(buffer, text.data(), text.size());
        buffer[text.size()] = '\0';
    }
    return text.size();
}
