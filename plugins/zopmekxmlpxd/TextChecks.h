// What names and texts XML can hold, and the way texts enter and leave through the interface.
#pragma once

#include <string>
#include <string_view>

// The length in bytes of the name (the production Name of XML 1.0) at the start of `text`, which is
// UTF-8; 0 when there is none.
size_t NameLength(std::string_view text);

// The position of the first character that no XML document can hold, not even as a reference, or
// npos. The text is UTF-8.
size_t FindForbidden(std::string_view text, size_t from = 0);

constexpr bool IsXmlSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

// Whether an XML document can hold a code point.
constexpr bool IsXmlCharacter(char32_t character) {
    return character < 0x20 ? IsXmlSpace(static_cast<char>(character))
                            : character < 0xD800 || (character > 0xDFFF && character < 0xFFFE) ||
                                  (character > 0xFFFF && character < 0x110000);
}

// These throw Refusal for what may not enter a document, as the contract says.
const char* CheckedName(const char* name);
std::string CheckedValue(const char* value, unsigned int valueKind);

// Whether a buffer of an ask-for-the-size call is to be filled. Throws Refusal for a buffer that
// cannot take `needed` bytes.
bool IsFilling(const void* buffer, unsigned long size, size_t needed);

// Copies `text` with its terminator, or only tells its length.
unsigned long CopyText(std::string_view text, char* buffer, unsigned long size);
