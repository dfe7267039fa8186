#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cwchar>
#include <string>

#include "compatible/osFree.h"

namespace {

TEST(BoundedFormatting, CutsAndTerminatesAndTellsTheFullLength) {
    char array[4] = "???";
    EXPECT_EQ(6, sprintf_s(array, "%s", "abcdef"));
    EXPECT_STREQ("abc", array);
    EXPECT_EQ(3, sprintf_s(nullptr, 0, "%s", "abc"));
    const wchar_t unencodable[] = {0x7FFFFFFF, 0};
    EXPECT_LT(sprintf_s(array, "%ls", unencodable), 0);
}

TEST(BoundedCopy, FailsAsAWhole) {
    struct {
        size_t size;
        const char* src;
        int result;
        const char* after;
    } const CASES[] = {{4, "abc", 0, "abc"},
                       {3, "abc", ERANGE, ""},
                       {4, nullptr, EINVAL, ""},
                       {0, "abc", ERANGE, "???"}};
    for (const auto& [size, src, result, after] : CASES) {
        char dst[] = "???";
        EXPECT_EQ(result, strcpy_s(dst, size, src));
        EXPECT_STREQ(after, dst) << size;
    }
    EXPECT_EQ(EINVAL, strcpy_s(nullptr, 4, "abc"));

    char bytes[] = "????";
    EXPECT_EQ(0, memcpy_s(bytes, 3, "abc", 3));
    EXPECT_STREQ("abc?", bytes);
    EXPECT_EQ(ERANGE, memcpy_s(bytes, 3, "abcd", 4));
    EXPECT_EQ(std::string("\0\0\0?", 4), std::string(bytes, 4));
    EXPECT_EQ(EINVAL, memcpy_s(bytes, 3, nullptr, 3));
    EXPECT_EQ(EINVAL, memcpy_s(nullptr, 3, "abc", 3));
}

TEST(DecimalText, IsCutAtSevenCharacters) {
    for (const auto& [value, text] :
         {std::pair(0, "0"), std::pair(1234567, "1234567"), std::pair(12345678, "1234567"),
          std::pair(INT_MIN, "-214748")}) {
        char dst[8] = "???????";
        EXPECT_EQ(0, u_itoa(value, dst, 10));
        EXPECT_STREQ(text, dst);
    }
    char dst[8] = "";
    EXPECT_EQ(EINVAL, u_itoa(1, dst, 16));
    EXPECT_EQ(EINVAL, u_itoa(1, nullptr, 10));
}

TEST(Replacing, DoesNotSearchWhatItInserted) {
    struct {
        std::string text, from, to, after;
    } const CASES[] = {{"aaa", "a", "aa", "aaaaaa"},
                       {"aaa", "aa", "a", "aa"},
                       {"abc", "", "x", "abc"},
                       {std::string("a\0b", 3), std::string("\0", 1), "--", "a--b"}};
    for (auto [text, from, to, after] : CASES) {
        strReplace(text, from, to);
        EXPECT_EQ(after, text);
    }
}

TEST(AllocatedText, IsACopy) {
    char text[] = "text";
    char* copy = SysAllocString(text);
    text[0] = 'n';
    EXPECT_STREQ("text", copy);
    EXPECT_EQ(0, SysFreeString(copy));
    EXPECT_EQ(nullptr, SysAllocString(nullptr));
}

TEST(Guid, IsEqualInAllParts) {
    const GUID guid{1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
    EXPECT_EQ(1, IsEqualGUID(guid, guid));
    EXPECT_EQ(0, IsEqualGUID(guid, {0, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}}));
    EXPECT_EQ(0, IsEqualGUID(guid, {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 0}}));
}

}  // namespace
