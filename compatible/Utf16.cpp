// UTF-16 and UTF-8 into each other, into strings and, as the Windows-style functions, into buffers.
// Both directions look through the whole text before they write.
#include "compatible/Utf16.h"

#include <cerrno>
#include <exception>
#include <optional>
#include <utility>

#include "compatible/Utf8.h"
#include "compatible/osFree.h"

namespace {

// How many bytes `text` takes in UTF-8; nothing when it has a lone surrogate.
std::optional<size_t> LengthInUtf8(std::u16string_view text) {
    size_t length = 0;
    for (size_t at = 0; at < text.size(); ++at) {
        const char16_t unit = text[at];
        if (IsHighSurrogate(unit)) {
            ++at;
            if (at == text.size() || !IsLowSurrogate(text[at])) {
                return std::nullopt;
            }
            length += 4;
        } else if (IsLowSurrogate(unit)) {
            return std::nullopt;
        } else {
            length += unit < 0x80 ? 1 : unit < 0x800 ? 2 : 3;
        }
    }
    return length;
}

char* WriteSixBits(char32_t bits, char* to) {
    *to = static_cast<char>(0x80 | (bits & 0x3F));
    return to + 1;
}

char* WriteCharacter(char32_t c, char* to) {
    if (c < 0x80) {
        *to++ = static_cast<char>(c);
    } else if (c < 0x800) {
        *to++ = static_cast<char>(0xC0 | (c >> 6));
        to = WriteSixBits(c, to);
    } else if (c < 0x10000) {
        *to++ = static_cast<char>(0xE0 | (c >> 12));
        to = WriteSixBits(c, WriteSixBits(c >> 6, to));
    } else {
        *to++ = static_cast<char>(0xF0 | (c >> 18));
        to = WriteSixBits(c, WriteSixBits(c >> 6, WriteSixBits(c >> 12, to)));
    }
    return to;
}

// `text` is well-formed, and `to` has room.
void WriteUtf8(std::u16string_view text, char* to) {
    for (size_t at = 0; at < text.size(); ++at) {
        char32_t c = text[at];
        if (IsHighSurrogate(text[at])) {
            c = 0x10000 + ((c & 0x3FF) << 10) + (text[++at] & 0x3FFU);
        }
        to = WriteCharacter(c, to);
    }
}

bool IsContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

bool NeedsTwoUnits(char lead) {
    return static_cast<unsigned char>(lead) >= 0xF0;
}

// `text` is UTF-8.
size_t LengthInUtf16(std::string_view text) {
    size_t length = 0;
    for (const char byte : text) {
        length += IsContinuation(byte) ? 0 : NeedsTwoUnits(byte) ? 2 : 1;
    }
    return length;
}

// `text` is UTF-8, and `to` has room.
void WriteUtf16(std::string_view text, char16_t* to) {
    for (size_t at = 0; at < text.size();) {
        const auto lead = static_cast<unsigned char>(text[at]);
        char32_t c = lead < 0x80   ? lead
                     : lead < 0xE0 ? lead & 0x1F
                     : lead < 0xF0 ? lead & 0xF
                                   : lead & 0x7;
        for (++at; at < text.size() && IsContinuation(text[at]); ++at) {
            c = (c << 6) | (static_cast<unsigned char>(text[at]) & 0x3F);
        }
        if (c >= 0x10000) {
            *to++ = static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
            c = 0xDC00 + (c & 0x3FF);
        }
        *to++ = static_cast<char16_t>(c);
    }
}

}  // namespace

bool Utf8FromUtf16(std::u16string_view text, std::string* out) {
    const std::optional<size_t> length = LengthInUtf8(text);
    if (!length) {
        return false;
    }
    std::string converted(*length, '\0');
    WriteUtf8(text, converted.data());
    *out = std::move(converted);
    return true;
}

bool Utf16FromUtf8(std::string_view text, std::u16string* out) {
    if (!IsUtf8(text)) {
        return false;
    }
    std::u16string converted(LengthInUtf16(text), u'\0');
    WriteUtf16(text, converted.data());
    *out = std::move(converted);
    return true;
}

int ConvertUtf16CStringToString(const char16_t* src, std::string& out) try {
    return src != nullptr && Utf8FromUtf16(src, &out) ? 0 : EINVAL;
} catch (const std::exception&) {
    return ENOMEM;
}

size_t CountLengthOfUtf16CString(const char16_t* src) {
    return src != nullptr ? std::char_traits<char16_t>::length(src) : 0;
}

int ConvertUtf16CStringToUtf8CString(const char16_t* src, char* dst, size_t size) {
    if (dst == nullptr) {
        return EINVAL;
    }
    if (size == 0) {
        return ERANGE;
    }
    if (src == nullptr) {
        return EINVAL;
    }
    const std::optional<size_t> length = LengthInUtf8(src);
    if (!length) {
        return EINVAL;
    }
    if (*length >= size) {
        return ERANGE;
    }
    WriteUtf8(src, dst);
    dst[*length] = '\0';
    return 0;
}

int ConvertUtf8CStringToUtf16CString(const char* src, char16_t* dst, size_t count) {
    if (dst == nullptr) {
        return EINVAL;
    }
    if (count == 0) {
        return ERANGE;
    }
    dst[0] = u'\0';
    if (src == nullptr || !IsUtf8(src)) {
        return EINVAL;
    }
    const size_t length = LengthInUtf16(src);
    if (length >= count) {
        return ERANGE;
    }
    WriteUtf16(src, dst);
    dst[length] = u'\0';
    return 0;
}
