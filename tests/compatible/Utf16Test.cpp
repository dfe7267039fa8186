// UTF-8, UTF-16 and each from the other.
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
}

TEST(Utf16, SurrogatesComeInPairs) {
    for (const std::u16string& text :
         {std::u16string{u'a', 0xD800}, std::u16string{0xDBFF, u'a'}, std::u16string{0xDC00, u'a'},
          std::u16string{0xDFFF}, std::u16string{0xD800, 0xDBFF, 0xDC00},
          std::u16string{0xD800, 0xDC00, 0xDC00}}) {
        std::string utf8 = "kept";
        EXPECT_FALSE(Utf8FromUtf16(text, &utf8)) << testing::PrintToString(text);
        EXPECT_EQ("kept", utf8);
    }
}

TEST(Utf8, IsTakenStrictly) {
    for (const char* text :
         {"\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xED\xBF\xBF",
          "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF", "\xC3", "\xE6\x97",
          "\xF0\x9F\x96", "\xC3(", "\xE6\x97x", "a\xFE", "\xC3\xB6\xB6"}) {
        EXPECT_FALSE(IsUtf8(text));
    }
}

TEST(Utf16, ConvertsIntoBuffersWithRoomForTheEnd) {
    const char16_t wide[] = u"aß\u65E5\U0001F5A8";  // 1 + 2 + 3 + 4 bytes
    const char text[] = "aß\u65E5\U0001F5A8";
    const char16_t broken[] = {0xD800, 0};
    // A failure leaves a buffer of bytes as it was, and empties one of units.
    const std::string kept(12, '?');
    const std::u16string empty = {0, u'?', u'?', u'?', u'?', u'?', u'?'};
    const struct {
        const char16_t* wide;
        const char* text;
        size_t bytes;  // the room in a buffer
        size_t units;
        int result;
        std::string bytesAfter;
        std::u16string unitsAfter;
    } rows[] = {
        {wide, text, 11, 6, 0, std::string(text, 11) + '?', std::u16string(wide, 6) + u'?'},
        {wide, text, 10, 5, ERANGE, kept, empty},
        {broken, "a\xED\xA0\x80", 1, 1, EINVAL, kept, empty},
        {nullptr, nullptr, 5, 5, EINVAL, kept, empty},
        {nullptr, nullptr, 0, 0, ERANGE, kept, std::u16string(7, u'?')},
    };
    for (const auto& row : rows) {
        std::string bytes = kept;
        std::u16string units(7, u'?');
        EXPECT_EQ(row.result, ConvertUtf16CStringToUtf8CString(row.wide, &bytes[0], row.bytes));
        EXPECT_EQ(row.result, ConvertUtf8CStringToUtf16CString(row.text, &units[0], row.units));
        EXPECT_EQ(row.bytesAfter, bytes) << row.bytes;
        EXPECT_EQ(row.unitsAfter, units) << row.units;
    }
    EXPECT_EQ(EINVAL, ConvertUtf16CStringToUtf8CString(wide, nullptr, 0));
    EXPECT_EQ(EINVAL, ConvertUtf8CStringToUtf16CString(text, nullptr, 0));
    std::string out = "kept";
    EXPECT_EQ(EINVAL, ConvertUtf16CStringToString(nullptr, out));
    EXPECT_EQ("kept", out);
    EXPECT_EQ(5, CountLengthOfUtf16CString(wide));
    EXPECT_EQ(0, CountLengthOfUtf16CString(nullptr));
}

}  // namespace
