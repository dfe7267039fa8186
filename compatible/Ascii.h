// Comparison without regard to the case of the letters A to Z, whatever the locale: tolower knows
// another letter i in a Turkish one.
#pragma once

#include <algorithm>
#include <string_view>

constexpr char AsciiLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr bool IsEqualAsciiNoCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return AsciiLower(x) == AsciiLower(y); });
}

constexpr bool ContainsAsciiNoCase(std::string_view text, std::string_view part) {
    return std::search(text.begin(), text.end(), part.begin(), part.end(),
                       [](char x, char y) { return AsciiLower(x) == AsciiLower(y); }) != text.end();
}
