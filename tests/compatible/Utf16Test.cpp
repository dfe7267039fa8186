#include "compatible/Utf16.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>

#include "compatible/Utf8.h"
#include "compatible/osFree.h"

namespace {

std::u16string InUtf16(char32_t c) {
    if (c < 0x10000) {
        return {static_cast<char16_t>(c)};
    }
    return {static_cast<char16_t>(0xD800 + (c - 0x10000) / 0x400),
            static_cast<char16_t>(0xDC00 + (c - 0x10000) % 0x400)};
}

// There are as many characters in UTF-8 as code points, and they sort like these. So the texts are
// the right ones when every one is a valid character and sorts after the one before.
TEST(Utf16, EveryCharacterMakesTheRoundTrip) {
    std::string last;
    for (char32_t c = 1; c <= 0x10FFFF; c += c == 0xD7FF ? 0x801 : 1) {
        const std::u16string text = InUtf16(c);
        std::string utf8;
        std::u16string back;
        const bool isRight = Utf8FromUtf16(text, &utf8) && IsUtf8(utf8) && utf8 > last &&
                             std::count_if(utf8.begin(), utf8.end(),
                                           [](char b) { return (b & 0xC0) != 0x80; }) == 1 &&
                             Utf16FromUtf8(utf8, &back) && back == text;
        ASSERT_TRUE(isRight) << static_cast<unsigned long>(c);
        last = utf8;
    }
    EXPECT_EQ("\xF4\x8F\xBF\xBF", last);
    std::string nul = "?";
    EXPECT_TRUE(Utf8FromUtf16(std::u16string_view(u"\0", 1), &nul));
    EXPECT_EQ(std::string(1, '\0'), nul);
}

// Three units from around the bounds of the two halves, judged by taking the whole pairs away.
TEST(Utf16, SurrogatesComeInPairs) {
    const char16_t units[] = {u'a', 0xD7FF, 0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xE000, 0xFFFF};
    const auto kindOf = [](char16_t unit) {
        return unit < 0xD800 || unit > 0xDFFF ? '.' : unit < 0xDC00 ? 'h' : 'l';
    };
    for (const char16_t a : units) {
        for (const char16_t b : units) {
            for (const char16_t c : units) {
                std::string kinds = {kindOf(a), kindOf(b), kindOf(c)};
                strReplace(kinds, "hl", ".");
                const bool isWellFormed = kinds.find_first_of("hl") == std::string::npos;
                const std::u16string text = {a, b, c};
                std::string utf8 = "kept";
                std::u16string back;
                EXPECT_EQ(isWellFormed, Utf8FromUtf16(text, &utf8));
                EXPECT_TRUE(isWellFormed ? Utf16FromUtf8(utf8, &back) && back == text
                                         : utf8 == "kept")
                    << testing::PrintToString(text);
            }
        }
    }
}

TEST(Utf16, ConvertsIntoABufferOfBytes) {
    const char16_t text[] = u"aß\u65E5\U0001F5A8";  // 1 + 2 + 3 + 4 bytes
    const std::string kept(12, '?');
    struct {
        const char16_t* src;
        size_t size;
        int result;
        std::string after;
    } const CASES[] = {
        {text, 11, 0, std::string("aß\u65E5\U0001F5A8\0?", 12)},
        {text, 10, ERANGE, kept},
        {u"", 1, 0, std::string("\0???????????", 12)},
        {u"a", 0, ERANGE, kept},
        {nullptr, 0, ERANGE, kept},
        {nullptr, 12, EINVAL, kept},
        {u"\xD800", 12, EINVAL, kept},
        {u"\xD800", 1, EINVAL, kept},
    };
    for (const auto& expected : CASES) {
        std::string dst = kept;
        EXPECT_EQ(expected.result,
                  ConvertUtf16CStringToUtf8CString(expected.src, dst.data(), expected.size))
            << expected.size;
        EXPECT_EQ(expected.after, dst) << expected.size;
    }
    EXPECT_EQ(EINVAL, ConvertUtf16CStringToUtf8CString(text, nullptr, 0));
    std::string out = "kept";
    EXPECT_EQ(EINVAL, ConvertUtf16CStringToString(nullptr, out));
    EXPECT_EQ("kept", out);
}

TEST(Utf16, ConvertsIntoABufferOfUnits) {
    const std::u16string kept(5, u'?');
    const std::u16string emptied = {0, u'?', u'?', u'?', u'?'};
    struct {
        const char* src;
        size_t count;
        int result;
        std::u16string after;
    } const CASES[] = {
        {"ß\U0001F5A8", 4, 0, {0xDF, 0xD83D, 0xDDA8, 0, u'?'}},
        {"ß\U0001F5A8", 3, ERANGE, emptied},
        {"", 1, 0, emptied},
        {"a", 0, ERANGE, kept},
        {nullptr, 0, ERANGE, kept},
        {nullptr, 5, EINVAL, emptied},
        {"\xC3", 5, EINVAL, emptied},
        {"a\xED\xA0\x80", 1, EINVAL, emptied},
    };
    for (const auto& expected : CASES) {
        std::u16string dst = kept;
        EXPECT_EQ(expected.result,
                  ConvertUtf8CStringToUtf16CString(expected.src, dst.data(), expected.count))
            << expected.count;
        EXPECT_EQ(expected.after, dst) << expected.count;
    }
    EXPECT_EQ(EINVAL, ConvertUtf8CStringToUtf16CString("a", nullptr, 0));
    EXPECT_EQ(3, CountLengthOfUtf16CString(u"a\U0001F5A8"));
    EXPECT_EQ(0, CountLengthOfUtf16CString(nullptr));
}

}  // namespace
