// Strict conversion between UTF-8 and UTF-16 in the machine's byte order.
#pragma once

#include <string>
#include <string_view>

constexpr bool IsHighSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xD800;
}

constexpr bool IsLowSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}

// False, with `*out` as it was, when `text` is not well-formed: a lone surrogate, or what IsUtf8
// (Utf8.h) refuses.
[[nodiscard]] bool Utf8FromUtf16(std::u16string_view text, std::string* out);
[[nodiscard]] bool Utf16FromUtf8(std::string_view text, std::u16string* out);
