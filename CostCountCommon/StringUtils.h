// Helpers for strings: replacing, comparing, splitting, and copies between UTF-8 and UTF-16.
//
// They keep no state and may be called from any thread. Nothing throws.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

class CStringUtils {
public:
    // Replaces every `from` by `to`, left to right; what was inserted is not searched again.
    // Returns how many there were; 0, with `s` as it was, for an empty `from`, a null argument, or
    // when memory is exhausted.
    static size_t ReplaceString(std::string& s, const char* from, const char* to);

    // Whether both are equal but for the case of the letters A to Z.
    static bool IsEqualNoCase(const std::string& a, const std::string& b);

    // Splits the whole of `s` into `*out`, whose earlier contents go. Quotes work as in SplitCsv.
    // False, with `*out` as it was, for a null argument or when memory is exhausted.
    static bool SplitAnyDelimiter(const char* s, char delimiter, std::vector<std::string>* out);

    // The fields of the `length` characters at `s`, separated by commas; a null `s` counts as an
    // empty text, which is one empty field. Quotes enclose what may contain commas, and a doubled
    // one inside them stands for itself. Any other quote stays in the text besides, unless it is
    // beside a comma, the last character of `s`, or among its first three. No field at all when
    // memory is exhausted.
    static std::vector<std::string> SplitCsv(const char* s, unsigned long length);
    static std::vector<std::wstring> SplitCsv(const wchar_t* s, unsigned long length);

    // ConvertUtf16CStringToUtf8CString, ConvertUtf8CStringToUtf16CString and
    // ConvertUtf16CStringToString (osFree.h), with their results; the last may also give ENOMEM,
    // with `dst` as it was. `size` counts bytes and 16-bit units.
    static int CopyString(char* dst, unsigned long size, const char16_t* src);
    static int CopyString(char16_t* dst, unsigned long size, const char* src);
    static int CopyString(std::string& dst, const char16_t* src);

    // The number of 16-bit units before the terminating zero; 0 for null.
    static size_t CountLength(const char16_t* s);
};
