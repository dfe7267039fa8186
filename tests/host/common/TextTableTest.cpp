#include "host/common/TextTable.h"

#include <gtest/gtest.h>

namespace {

TEST(TextTable, AlignsCharactersAndShowsWhatATerminalWouldObey) {
    tallyquist::TextTable table({"key", "name", "n"});
    table.Add({"a",
               "B\xC3\xBC"
               "cher\xE2\x82\xAC",
               "1"});
    table.Add({"long key", "\x1B[2J\n", ""});
    table.Add({"", "\xFF", "3"});
    EXPECT_EQ(
        "key       name         n\n"
        "a         B\xC3\xBC"
        "cher\xE2\x82\xAC      1\n"
        "long key  \\x1B[2J\\x0A\n"
        "          \\xFF         3\n",
        table.Text());
}

}  // namespace
