#include "host/export/CellValues.h"

#include <gtest/gtest.h>

namespace tallyquist {
namespace {

TEST(PortableText, ReplacesWhatReadersMisreadAndGuardsFormulas) {
    const std::pair<const char*, const char*> CASES[] = {
        {"plain", "plain"},
        {"", ""},
        {"say \"hi\"", "say ”hi”"},
        {"12,50", "12;50"},
        {"a\r\nb\nc\rd", "a b c d"},
        {"=1+1", "'=1+1"},
        {"+SUM(A1)", "'+SUM(A1)"},
        {"-cmd|calc", "'-cmd|calc"},
        {"@A1", "'@A1"},
        {"＝1", "'＝1"},
        {"\t=1+1", "'\t=1+1"},
        {"\n=1+1", "' =1+1"},
        {"  =A1", "'  =A1"},
        {"-5", "-5"},
        {"+3.25", "+3.25"},
        {"-12,50", "-12;50"},
        {"-1e-7", "-1e-7"},
        {"-40%", "-40%"},
        {"--5", "--5"},
        {"-", "-"},
        {"=", "="},
        {"- -", "'- -"},
        {"-5-5", "'-5-5"},
        {"-1e", "'-1e"},
        {"-e5", "'-e5"},
        {"5=5", "5=5"},
        {"a@b", "a@b"},
    };
    for (const auto& [text, portable] : CASES) {
        EXPECT_EQ(portable, PortableText(text)) << text;
    }
}

TEST(CellValues, CountsWhatItChangesOrWhatWillBeQuotedTwice) {
    CellValues portable(ValueMode::PORTABLE);
    CellValues exact(ValueMode::EXACT);
    for (const char* text : {"plain", "a,b", "=1+1", "-5", "line\nbreak"}) {
        std::string changed = text;
        std::string kept = text;
        portable.Prepare(changed);
        exact.Prepare(kept);
        EXPECT_EQ(PortableText(text), changed);
        EXPECT_EQ(text, kept);
    }
    EXPECT_EQ(3U, portable.Count());
    EXPECT_EQ(2U, exact.Count());
}

}  // namespace
}  // namespace tallyquist
