#include <gtest/gtest.h>

#include <cwchar>

#include "compatible/osFree.h"

namespace {

TEST(BoundedFormatting, CutsAndTerminatesAndTellsTheFullLength) {
    char array[4] = "???";
    EXPECT_EQ(6, sprintf_s(array, "%s", "abcdef"));
    EXPECT_STREQ("abc", array);
    EXPECT_EQ(2, sprintf_s(array, sizeof array, "%d", 42));
    EXPECT_STREQ("42", array);
    EXPECT_EQ(3, sprintf_s(nullptr, 0, "%s", "abc"));
    const wchar_t unencodable[] = {0x7FFFFFFF, 0};
    EXPECT_LT(sprintf_s(array, "%ls", unencodable), 0);
}

}  // namespace
