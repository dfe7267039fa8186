#include "compatible/Utf8.h"

#include <gtest/gtest.h>

namespace {

TEST(Utf8, IsTakenStrictly) {
    for (const char* text : {"", "plain", "Größe", "日本語", "\xF0\x9F\x96\xA8", "\x7F", "\xC2\x80",
                             "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
                             "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"}) {
        EXPECT_TRUE(IsUtf8(text)) << text;
    }
    for (const char* text :
         {"\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xED\xBF\xBF",
          "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF", "\xC3", "\xE6\x97",
          "\xF0\x9F\x96", "\xC3(", "\xE6\x97x", "a\xFE", "\xC3\xB6\xB6"}) {
        EXPECT_FALSE(IsUtf8(text));
    }
}

}  // namespace
