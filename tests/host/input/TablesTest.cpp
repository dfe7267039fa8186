// CSV and TSV files as inputs.
#include "tests/host/input/InputTestSupport.h"

namespace tallyquist {
namespace {

using Texts = std::vector<std::string>;

struct Table {
    const char* name;
    std::string text;
    InputKind kind = InputKind::AUTOMATIC;
    std::map<std::string, ColumnType> types = {};
};

Outcome ReadTable(const Folder& folder, const Table& table) {
    InputOptions options;
    options.paths = {folder.Write(table.name, table.text)};
    options.kind = table.kind;
    options.columnTypes = table.types;
    return ReadAll(options);
}

TEST(Tables, AreReadExactly) {
    const struct {
        Table table;
        const char* columns;
        Texts rows;
    } CASES[] = {
        {{"t.csv", "name,note\n\"a, b\",\"say \"\"hi\"\"\"\n\" x \", y \n\"1\r\n2\",\n"},
         "name|note",
         {"a, b|say \"hi\"", " x | y ", "1\r\n2|"}},
        {{"t.CSV",
          "\xEF\xBB\xBF"
          "one\r\n\r\n1\r\n2"},
         "one",
         {"1", "2"}},
        {{"t.csv", "a;b\n1,5;2\n"}, "a|b", {"1,5|2"}},
        {{"t.csv", "a,b;c\n1,2;3\n"}, "a|b;c", {"1|2;3"}},
        {{"t.tsv", "a\tb\nx, y\t\n"}, "a|b", {"x, y|"}},
        {{"x", "a,b\n1,2\n"}, "a|b", {"1|2"}},
        {{"x", "a\tb,c\n1\t2\n"}, "a|b,c", {"1|2"}},
        {{"t.csv", "a,b\tc\n1\t,2\n", InputKind::TSV}, "a,b|c", {"1|,2"}},
        {{"x", "only\n1\n", InputKind::CSV}, "only", {"1"}},
        {{"x",
          "when,long\n+5,-7\n,9223372036854775807\n-62135596800,\n253402300799,\n",
          InputKind::AUTOMATIC,
          {{"when", ColumnType::DATE_TIME}, {"long", ColumnType::TIME_SPAN}}},
         "when*|long~",
         {"5|-7", "|9223372036854775807", "-62135596800|", "253402300799|"}},
        {{"t.csv", "media,n\nCustom.4x6in,1\n-,2\n"},
         "media|n|width_mm|height_mm",
         {"Custom.4x6in|1|101.6|152.4", "-|2||"}},
        {{"t.csv", "media,width_mm\nA4,7\n"}, "media|width_mm", {"A4|7"}},
    };
    const Folder folder;
    for (const auto& test : CASES) {
        SCOPED_TRACE(test.table.text);
        const Outcome outcome = ReadTable(folder, test.table);
        EXPECT_EQ(outcome.columns, test.columns);
        EXPECT_EQ(outcome.rows, test.rows);
        EXPECT_EQ(outcome.error, "");
    }
}

TEST(Tables, WhatIsRefused) {
    const std::map<std::string, ColumnType> spanOfB = {{"b", ColumnType::TIME_SPAN}};
    const std::map<std::string, ColumnType> dateOfB = {{"b", ColumnType::DATE_TIME}};
    const struct {
        Table table;
        const char* where;  // behind the path
        const char* reason;
    } CASES[] = {
        {{"t.csv", "a,b\n1,2\nx\"y,2\n"}, ":3", "a quote stands where none may be"},
        {{"t.csv", "a,b\n\"1\" ,2\n"}, ":2", "a quote stands"},
        {{"t.csv", "a,b\n1,2\n3,\"4\n5\n"}, ":3", "not closed"},
        {{"t.csv", "a,b\n\"1\n2\",3\n1\n"}, ":4", "1 cells, but the header has 2"},
        {{"t.csv", "a,b\n1,2,3\n"}, ":2", "3 cells"},
        {{"t.csv", "a,b,a\n"}, ":1", "two columns are named 'a'"},
        {{"t.csv", std::string("a,b\n1,\0\n", 8)}, ":2", "NUL"},
        {{"t.csv", "a,b\n" + std::string(2000000, 'x') + ",1\n"}, ":2", "longer than 1 MiB"},
        {{"t.csv", "\n", InputKind::CSV}, "", "is empty"},
        {{"t.csv", "a,b\n1,2\n3,4x\n", InputKind::CSV, spanOfB}, ":3", "column 'b' holds '4x'"},
        {{"t.csv", "a,b\n1,2.5\n", InputKind::CSV, spanOfB}, ":2", "no whole number"},
        {{"t.csv", "a,b\n1,+-2\n", InputKind::CSV, spanOfB}, ":2", "no whole number"},
        {{"t.csv", "a,b\n1, 2\n", InputKind::CSV, spanOfB}, ":2", "no whole number"},
        {{"t.csv", "a,b\n1,9223372036854775808\n", InputKind::CSV, spanOfB}, ":2", "64 bits"},
        {{"t.csv", "a,b\n1,-62135596801\n", InputKind::CSV, dateOfB}, ":2", "years 1 and 9999"},
        {{"t.csv", "a,b\n1,253402300800\n", InputKind::CSV, dateOfB}, ":2", "years 1 and 9999"},
    };
    const Folder folder;
    for (const auto& test : CASES) {
        SCOPED_TRACE(test.table.text.substr(0, 80));
        ExpectError(ReadTable(folder, test.table), folder.Path(test.table.name) + test.where,
                    test.reason);
    }
    const Outcome unknown = ReadTable(
        folder, {"t.csv", "a,b\n1,2\n", InputKind::AUTOMATIC, {{"c", ColumnType::DATE_TIME}}});
    EXPECT_EQ(unknown.error, "no table has a column 'c'; there are 'a', 'b'");
    InputOptions options;
    options.paths = {folder.Path("t.csv")};
    options.columnTypes = {{"c", ColumnType::DATE_TIME}};
    EXPECT_THROW(OpenInputs(options, {}, nullptr), OptionError);
}

TEST(Tables, LongTablesAreRecognisedByTheirBeginning) {
    const Folder folder;
    std::string text = "a,b\n";
    for (int i = 0; i < 20000; ++i) {
        text += std::to_string(i) + ",\"x\ny\"\n";
    }
    const Outcome outcome = ReadTable(folder, {"x", text});
    EXPECT_EQ(outcome.error, "");
    EXPECT_EQ(outcome.rows.size(), 20000U);
}

TEST(Tables, SeveralMakeOne) {
    const Folder folder;
    const Outcome outcome =
        ReadFiles({folder.Write("1.csv", "a,b\n1,2\n"), folder.Write("2.tsv", "c\tb\n3\t4\n")});
    EXPECT_EQ(outcome.columns, "a|b|c");
    EXPECT_EQ(outcome.rows, (Texts{"1|2|", "|4|3"}));
}

}  // namespace
}  // namespace tallyquist
