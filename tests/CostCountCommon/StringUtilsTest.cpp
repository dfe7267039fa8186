#include "CostCountCommon/StringUtils.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "tests/support/FailingAllocation.h"

namespace {

using Fields = std::vector<std::string>;

TEST(Splitting, FollowsQuotesAndCommas) {
    const struct {
        std::string line;
        Fields fields;
    } SPLITS[] = {
        {"", {""}},
        {"a,b,", {"a", "b", ""}},
        {"\"x,y\",z", {"x,y", "z"}},
        {"\"\"", {""}},
        {"\"a\"\"b\"", {"a\"b"}},
        {"\"open,", {"open,"}},
        // A quote inside a field is kept and switches, so it may hide the commas after it.
        {"abc\"d\"e", {"abc\"d\"e"}},
        {"abc\"d,e", {"abc\"d,e"}},
        {"abc\"\"d", {"abc\"\"d"}},
        {"abcd\"", {"abcd"}},
        {"abc,d\"e", {"abc", "d\"e"}},
        // Not among the first three characters of the line, whichever field they belong to.
        {"ab\"c\"d", {"abc\"d"}},
        {",a\"b,c", {"", "ab,c"}},
        {std::string("a\0b", 3), {std::string("a\0b", 3)}},
    };
    for (const auto& [line, fields] : SPLITS) {
        EXPECT_EQ(fields, CStringUtils::SplitCsv(line.c_str(), line.size())) << line;
    }
    EXPECT_EQ(Fields{""}, CStringUtils::SplitCsv(static_cast<const char*>(nullptr), 5));
    EXPECT_EQ((std::vector<std::wstring>{L"\u65E5", L"\U0001F5A8"}),
              CStringUtils::SplitCsv(L"\u65E5,\U0001F5A8,", 3));
}

TEST(Splitting, TakesAnyDelimiter) {
    Fields fields = {"earlier"};
    EXPECT_TRUE(CStringUtils::SplitAnyDelimiter("a,b;\"c;d\";", ';', &fields));
    EXPECT_EQ((Fields{"a,b", "c;d", ""}), fields);
    EXPECT_FALSE(CStringUtils::SplitAnyDelimiter(nullptr, ';', &fields));
    EXPECT_FALSE(CStringUtils::SplitAnyDelimiter("a", ';', nullptr));
    EXPECT_EQ(3, fields.size());
}

TEST(StringUtils, ReplaceAndCount) {
    std::string text = "aaa";
    EXPECT_EQ(3, CStringUtils::ReplaceString(text, "a", "aa"));
    EXPECT_EQ(0, CStringUtils::ReplaceString(text, nullptr, "x"));
    EXPECT_EQ(0, CStringUtils::ReplaceString(text, "a", nullptr));
    EXPECT_EQ("aaaaaa", text);
}

TEST(StringUtils, CompareWithoutCase) {
    EXPECT_TRUE(CStringUtils::IsEqualNoCase("Printer-[1] AZ", "pRINTER-[1] az"));
    EXPECT_FALSE(CStringUtils::IsEqualNoCase("abc", "ab"));
    EXPECT_FALSE(CStringUtils::IsEqualNoCase("@", "`")) << "differ like letters, but are none";
    EXPECT_FALSE(CStringUtils::IsEqualNoCase("Ä", "ä")) << "only A to Z";
}

TEST(StringUtils, CopyBetweenEncodings) {
    char bytes[4] = "???";
    EXPECT_EQ(ERANGE, CStringUtils::CopyString(bytes, 3, u"日"));
    EXPECT_EQ(0, CStringUtils::CopyString(bytes, 4, u"日"));
    EXPECT_STREQ("日", bytes);
    char16_t units[2] = {};
    EXPECT_EQ(0, CStringUtils::CopyString(units, 2, "日"));
    EXPECT_EQ(std::u16string(u"日"), units);
    std::string text;
    EXPECT_EQ(0, CStringUtils::CopyString(text, u"日"));
    EXPECT_EQ("日", text);
    EXPECT_EQ(1, CStringUtils::CountLength(u"日"));
}

TEST(StringUtils, SurviveTheEndOfMemory) {
    const std::string line(1000, 'x');
    const std::u16string wide(1000, u'x');
    std::string text = line;
    Fields fields = {"kept"};
    const FailingAllocation failing(100);
    EXPECT_EQ(0, CStringUtils::ReplaceString(text, "x", "yy"));
    EXPECT_EQ(ENOMEM, CStringUtils::CopyString(text, wide.c_str()));
    EXPECT_FALSE(CStringUtils::SplitAnyDelimiter(line.c_str(), ',', &fields));
    EXPECT_EQ(0, CStringUtils::SplitCsv(line.c_str(), line.size()).size());
    EXPECT_EQ(line, text);
    EXPECT_EQ(Fields{"kept"}, fields);
}

}  // namespace
