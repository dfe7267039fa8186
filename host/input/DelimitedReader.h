// Tables in text form: CSV or TSV with a header.
#pragma once

#include <csv.h>

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/input/LineReader.h"
#include "host/input/Record.h"

namespace tallyquist {

// The separator that the header line of a table uses: a tab, else a comma, else a semicolon; a
// comma when there is none of them.
char SeparatorOf(std::string_view headerLine);

// How rows keep to the header.
enum class RowShape {
    EXACT,   // as many cells as the header has
    PADDED,  // as spreadsheet programs write: columns may be without a name, rows end at their last
             // cell with a text or go on with empty ones, rows of nothing but separators, which are
             // passed over, may stand anywhere
};

// Cells may be quoted as RFC 4180 says, in both kinds of tables. Whatever is not exactly a table of
// that form is refused rather than guessed at.
class DelimitedReader : public RecordReader {
public:
    static constexpr size_t MAX_ROW = size_t{16} << 20;

    // Reads the header. `types` may name columns that this table does not have.
    DelimitedReader(std::unique_ptr<LineReader> lines, char separator,
                    const std::map<std::string, ColumnType>& types,
                    RowShape shape = RowShape::EXACT);
    ~DelimitedReader() override;

    // Takes a text that breaks off anywhere, such as the beginning of a file.
    void AllowOpenEnd() { m_openEnd = true; }

    const std::vector<Column>& Columns() const { return m_columns; }
    bool Next(Record& record) override;
    // Where the row that was read last began; the header before the first Next.
    uint64_t RowLine() const { return m_readyLine; }
    // How many cells the row that was read last has of its own.
    size_t CellsGiven() const { return m_cellsGiven; }
    uint64_t BytesRead() const override { return m_lines->BytesRead(); }

private:
    static void OnCell(void* text, size_t size, void* self);
    static void OnRowEnd(int terminator, void* self);

    void ReadHeader(const std::map<std::string, ColumnType>& types);
    bool ReadRow(Row& row);
    bool ReadFilledRow(Row& row);
    void Feed();
    void Finish();
    void Pad(Row& row) const;
    void CheckTyped(size_t column, std::string& value) const;
    [[noreturn]] void Fail(uint64_t line, const std::string& reason) const;

    std::unique_ptr<LineReader> m_lines;
    RowShape m_shape;
    csv_parser m_parser{};
    std::vector<Column> m_columns;
    Line m_line;
    Row m_cells;               // of the row that is being read
    std::deque<Row> m_rows;    // complete ones that wait
    uint64_t m_rowLine = 1;    // where the current row began
    uint64_t m_readyLine = 1;  // where the rows that wait began
    size_t m_rowBytes = 0;
    size_t m_cellsGiven = 0;
    bool m_inRow = false;
    bool m_ended = false;
    bool m_openEnd = false;
    bool m_outOfMemory = false;
};

}  // namespace tallyquist
