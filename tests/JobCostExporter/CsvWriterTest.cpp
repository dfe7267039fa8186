// What the exporter writes.
#include <cstdio>
#include <utility>

#include "tests/JobCostExporter/CsvFixture.h"
#include "tests/support/Environment.h"

extern "C" int WriteFromC(const char* path);

namespace {

class CsvWriter : public CsvFixture {
protected:
    void SetUp() override { ASSERT_EQ(0, Open()); }

    std::string CloseAndRead() {
        EXPECT_EQ(0, m_exporter.close(m_handle));
        return ReadFile(m_path);
    }

    // What a row of one cell becomes, in a file begun anew.
    std::string Cell(const char* value, const char* type = nullptr) {
        EXPECT_EQ(0, m_exporter.close(m_handle));
        EXPECT_EQ(0, Open());
        EXPECT_EQ(0, WriteRow({value}, {type}));
        return CloseAndRead();
    }
};

TEST_F(CsvWriter, QuotesEveryCellAndEscapedOnesTwice) {
    const std::pair<const char*, const char*> CASES[] = {
        {"abc", "\"abc\""},
        {"", "\"\""},
        {nullptr, "\"\""},
        {"a,b", "\"\"a,b\"\""},
        {"x\"y", "\"\"x\"\"y\"\""},
        {"\"", "\"\"\"\"\"\""},
        {"\"\"", "\"\"\"\"\"\"\"\""},
        {"a b;c!#$+'-.\t", "\"a b;c!#$+'-.\t\""},
        {"Größe – 日本", "\"Größe – 日本\""},
    };
    for (const auto& [value, cell] : CASES) {
        EXPECT_EQ(cell, Cell(value));
    }
}

// The scan for characters to escape goes by whole words: try each at each place of texts of each
// length.
TEST_F(CsvWriter, FindsACharacterToEscapeWhereverItStands) {
    std::string expected;
    for (size_t length = 1; length <= 40; ++length) {
        for (size_t at = 0; at < length; ++at) {
            for (const char special : {',', '"', '\r', '\n', '!', '-', '\xAC', '\x8A'}) {
                std::string value(length, 'x');
                value[at] = special;
                ASSERT_EQ(0, WriteRow({value.c_str()}));
                const bool escaped = std::string(",\"\r\n").find(special) != std::string::npos;
                const std::string quotes = escaped ? "\"\"" : "\"";
                if (special == '"') {
                    value.insert(at, 1, '"');
                }
                expected.append(quotes).append(value).append(quotes).append("\n");
            }
        }
    }
    expected.pop_back();
    EXPECT_EQ(expected, CloseAndRead());
}

TEST_F(CsvWriter, SeparatesCellsAndRows) {
    EXPECT_EQ(0, m_exporter.writeBom(m_handle));
    EXPECT_EQ(0, WriteRow({"a", "b", ""}));
    EXPECT_EQ(0, WriteRow({}));
    const char* value = "ignored";
    EXPECT_EQ(0, m_exporter.writeValues(m_handle, -1, &value, nullptr, nullptr));
    EXPECT_EQ(0, WriteRow({"c"}));
    EXPECT_EQ(0, WriteRow({}));
    EXPECT_EQ("\xEF\xBB\xBF\"a\",\"b\",\"\"\n\n\n\"c\"\n", CloseAndRead());
}

TEST_F(CsvWriter, FormatsTypedCells) {
    const ScopedVariable zone("TZ", "Asia/Tokyo");
    struct {
        const char* type;
        const char* value;
        const char* cell;
    } const CASES[] = {
        {"datetime", "1795250919", "\"2026/11/21 17:48:39\""},
        {"datetime", "-1", "\"1970/01/01 08:59:59\""},
        {"datetime", "no number", "\"1970/01/01 09:00:00\""},
        {"datetime", nullptr, "\"1970/01/01 09:00:00\""},
        {"datetime", "9223372036854775807", "\"1900/01/00 00:00:00\""},
        {"Datetime", "a,b", "\"\"a,b\"\""},
        {"", "7", "\"7\""},
        {"timespan", "90061", "\"25:01:01\""},
        {"timespan", "359999", "\"99:59:59\""},
        {"timespan", "360000", "\"100:00:00\""},
        {"timespan", "-61", "\"00:-1:-1\""},
        {"timespan", "-3661", "\"-1:-1:-1\""},
        {"timespan", "12 apples", "\"00:00:12\""},
        {"timespan", "9223372036854775807", "\"1011703407:30:07\""},
    };
    for (const auto& expected : CASES) {
        EXPECT_EQ(expected.cell, Cell(expected.value, expected.type))
            << expected.type << " of " << (expected.value != nullptr ? expected.value : "null");
    }
}

TEST_F(CsvWriter, KeepsRowsLargerThanTheStreamsBuffer) {
    const std::string large(13 * 1024 * 1024, 'x');
    const std::string quoted(5 * 1024 * 1024, ',');
    EXPECT_EQ(0, WriteRow({"a", large.c_str(), quoted.c_str(), "b"}));
    EXPECT_EQ(0, WriteRow({"c"}));
    EXPECT_EQ("\"a\",\"" + large + "\",\"\"" + quoted + "\"\",\"b\"\n\"c\"", CloseAndRead());
}

TEST_F(CsvWriter, AnAbandonedStreamKeepsItsOwnBytes) {
    EXPECT_EQ(0, WriteRow({"first"}));
    const std::string second = m_folder.Path("second.csv");
    EXPECT_EQ(0, m_exporter.open(m_handle, second.c_str()));
    EXPECT_EQ(0, WriteRow({"second"}));
    EXPECT_EQ(0, m_exporter.close(m_handle));
    EXPECT_EQ("\"second\"", ReadFile(second));
    std::fflush(nullptr);  // as the end of the process does
    EXPECT_EQ("\"first\"", ReadFile(m_path));
}

TEST_F(CsvWriter, RefusesWritesWithoutAFile) {
    EXPECT_EQ(0, m_exporter.close(m_handle));
    EXPECT_EQ(-1, m_exporter.writeBom(m_handle));
    EXPECT_EQ(-1, WriteRow({"a"}));
    EXPECT_EQ("", ReadFile(m_path));
}

TEST_F(CsvWriter, ServesAHostInC) {
    EXPECT_EQ(0, WriteFromC(m_path.c_str()));
    EXPECT_EQ("\xEF\xBB\xBF\"user\",\"time\"\n\"alice\",\"25:01:01\"", ReadFile(m_path));
}

}  // namespace
