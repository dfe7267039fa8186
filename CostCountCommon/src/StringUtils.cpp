#include "CostCountCommon/StringUtils.h"

#include <exception>
#include <string_view>
#include <utility>

#include "compatible/Ascii.h"
#include "compatible/ReplaceAll.h"
#include "compatible/osFree.h"

namespace {

// Whether the quote at `at` stands inside a field, away from any delimiter, and so is part of the
// text. That the first three characters of the line, not of the field, never count as such is
// deliberate: lines that were split so before must give the same fields again.
template <typename Char>
bool IsQuoteOfText(std::basic_string_view<Char> line, size_t at, Char delimiter) {
    return at >= 3 && line[at - 1] != delimiter && at + 1 < line.size() &&
           line[at + 1] != delimiter;
}

template <typename Char>
std::vector<std::basic_string<Char>> Split(std::basic_string_view<Char> line, Char quote,
                                           Char delimiter) {
    std::vector<std::basic_string<Char>> fields;
    std::basic_string<Char> field;
    bool quoted = false;
    for (size_t at = 0; at < line.size(); ++at) {
        const Char c = line[at];
        if (c == quote && quoted && at + 1 < line.size() && line[at + 1] == quote) {
            field += quote;
            ++at;
        } else if (c == quote) {
            // A quote of the text switches too, so a delimiter after it does not end the field.
            quoted = !quoted;
            if (IsQuoteOfText(line, at, delimiter)) {
                field += quote;
            }
        } else if (c == delimiter && !quoted) {
            fields.push_back(std::exchange(field, {}));
        } else {
            field += c;
        }
    }
    fields.push_back(std::move(field));
    return fields;
}

template <typename Char>
std::vector<std::basic_string<Char>> SplitAtCommas(const Char* s, unsigned long length) try {
    return Split(std::basic_string_view<Char>(s, s != nullptr ? length : 0), Char{'"'}, Char{','});
} catch (const std::exception&) {
    return {};  // out of memory
}

}  // namespace

size_t CStringUtils::ReplaceString(std::string& s, const char* from, const char* to) try {
    return from != nullptr && to != nullptr ? ReplaceAll(s, from, to) : 0;
} catch (const std::exception&) {
    return 0;  // out of memory
}

bool CStringUtils::IsEqualNoCase(const std::string& a, const std::string& b) {
    // Not by tolower, whose answer for the letter I depends on the locale of the host.
    return IsEqualAsciiNoCase(a, b);
}

bool CStringUtils::SplitAnyDelimiter(const char* s, char delimiter,
                                     std::vector<std::string>* out) try {
    if (s == nullptr || out == nullptr) {
        return false;
    }
    *out = Split(std::string_view(s), '"', delimiter);
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

std::vector<std::string> CStringUtils::SplitCsv(const char* s, unsigned long length) {
    return SplitAtCommas(s, length);
}

std::vector<std::wstring> CStringUtils::SplitCsv(const wchar_t* s, unsigned long length) {
    return SplitAtCommas(s, length);
}

int CStringUtils::CopyString(char* dst, unsigned long size, const char16_t* src) {
    return ConvertUtf16CStringToUtf8CString(src, dst, size);
}

int CStringUtils::CopyString(char16_t* dst, unsigned long size, const char* src) {
    return ConvertUtf8CStringToUtf16CString(src, dst, size);
}

int CStringUtils::CopyString(std::string& dst, const char16_t* src) {
    return ConvertUtf16CStringToString(src, dst);
}

size_t CStringUtils::CountLength(const char16_t* s) {
    return CountLengthOfUtf16CString(s);
}
