// Tables in text form. External interface: DelimitedReader, SeparatorOf.
// The lines are fed to the CSV library one by one, which keeps the line numbers for messages.
#include "host/input/DelimitedReader.h"

#include <algorithm>
#include <charconv>
#include <new>
#include <set>
#include <utility>

#include "host/common/Printable.h"

namespace tallyquist {
namespace {

// Blanks around a cell belong to it.
int NothingIsBlank(unsigned char) {
    return 0;
}

}  // namespace

char SeparatorOf(std::string_view headerLine) {
    for (const char separator : {'\t', ',', ';'}) {
        if (headerLine.find(separator) != std::string_view::npos) {
            return separator;
        }
    }
    return ',';
}

DelimitedReader::DelimitedReader(std::unique_ptr<LineReader> lines, char separator,
                                 const std::map<std::string, ColumnType>& types, RowShape shape)
    : m_lines(std::move(lines)), m_shape(shape) {
    if (csv_init(&m_parser, CSV_STRICT | CSV_STRICT_FINI) != 0) {
        throw std::bad_alloc();
    }
    csv_set_delim(&m_parser, static_cast<unsigned char>(separator));
    csv_set_space_func(&m_parser, NothingIsBlank);
    try {
        ReadHeader(types);
    } catch (...) {
        csv_free(&m_parser);
        throw;
    }
}

DelimitedReader::~DelimitedReader() {
    csv_free(&m_parser);
}

void DelimitedReader::Fail(uint64_t line, const std::string& reason) const {
    throw InputError(m_lines->Name() + ":" + std::to_string(line) + ": " + reason);
}

// No exception may pass through the C library.
void DelimitedReader::OnCell(void* text, size_t size, void* self) {
    auto& reader = *static_cast<DelimitedReader*>(self);
    try {
        reader.m_cells.emplace_back(static_cast<const char*>(text), size);
    } catch (const std::bad_alloc&) {
        reader.m_outOfMemory = true;
    }
}

void DelimitedReader::OnRowEnd(int /*terminator*/, void* self) {
    auto& reader = *static_cast<DelimitedReader*>(self);
    try {
        reader.m_rows.push_back(std::move(reader.m_cells));
    } catch (const std::bad_alloc&) {
        reader.m_outOfMemory = true;
    }
    reader.m_cells = {};
    reader.m_inRow = false;
    reader.m_rowBytes = 0;
}

void DelimitedReader::ReadHeader(const std::map<std::string, ColumnType>& types) {
    Row header;
    if (!ReadFilledRow(header)) {
        throw InputError(m_lines->Name() + ": is empty; a table needs a header line");
    }
    std::set<std::string_view> seen;
    for (const std::string& name : header) {
        const bool mayRepeat = m_shape == RowShape::PADDED && name.empty();
        if (!seen.insert(name).second && !mayRepeat) {
            Fail(m_readyLine, "two columns are named " + Printable(name));
        }
        const auto type = types.find(name);
        m_columns.push_back(
            {.name = name, .type = type == types.end() ? ColumnType::TEXT : type->second});
    }
}

// Gives the next line to the parser, which may complete a row, several, or none.
void DelimitedReader::Feed() {
    if (m_line.tooLong || m_line.text.find('\0') != std::string::npos) {
        Fail(m_line.number,
             m_line.tooLong ? "the line is longer than 1 MiB" : "the line holds NUL bytes");
    }
    if (!m_inRow) {
        m_rowLine = m_line.number;
        m_inRow = true;
    }
    m_readyLine = m_rowLine;
    m_rowBytes += m_line.text.size() + m_line.end.size();
    if (m_rowBytes > MAX_ROW) {
        Fail(m_rowLine, "a quoted cell goes on for more than 16 MiB; its quote is not closed");
    }
    for (const std::string_view text : {std::string_view(m_line.text), m_line.end}) {
        if (csv_parse(&m_parser, text.data(), text.size(), OnCell, OnRowEnd, this) != text.size()) {
            if (csv_error(&m_parser) != CSV_EPARSE) {
                throw std::bad_alloc();
            }
            Fail(m_line.number,
                 "a quote stands where none may be; a cell with a quote has to be "
                 "quoted, with the quote doubled");
        }
    }
    if (m_line.text.empty() && m_rows.empty() && m_rowLine == m_line.number) {
        m_inRow = false;  // The parser skips empty lines.
        m_rowBytes = 0;
    }
}

void DelimitedReader::Finish() {
    m_ended = true;
    if (!m_openEnd && csv_fini(&m_parser, OnCell, OnRowEnd, this) != 0) {
        Fail(m_rowLine, "a quoted cell of this row is not closed before the end");
    }
}

bool DelimitedReader::ReadRow(Row& row) {
    while (m_rows.empty()) {
        if (m_ended) {
            return false;
        }
        if (m_lines->Next(m_line)) {
            Feed();
        } else {
            Finish();
        }
        if (m_outOfMemory) {
            throw std::bad_alloc();
        }
    }
    row = std::move(m_rows.front());
    m_rows.pop_front();
    return true;
}

bool DelimitedReader::ReadFilledRow(Row& row) {
    const auto isEmpty = [](const std::string& cell) { return cell.empty(); };
    do {
        if (!ReadRow(row)) {
            return false;
        }
    } while (m_shape == RowShape::PADDED && std::all_of(row.begin(), row.end(), isEmpty));
    return true;
}

void DelimitedReader::Pad(Row& row) const {
    while (row.size() > m_columns.size() && row.back().empty()) {
        row.pop_back();
    }
    row.resize(std::max(row.size(), m_columns.size()));
}

void DelimitedReader::CheckTyped(size_t column, std::string& value) const {
    if (value.empty()) {
        return;
    }
    const bool plus = value.size() > 1 && value[0] == '+' && value[1] != '-';
    const char* begin = value.data() + (plus ? 1 : 0);
    const char* end = value.data() + value.size();
    int64_t number = 0;
    const auto [stop, error] = std::from_chars(begin, end, number);
    if (error != std::errc() || stop != end) {
        Fail(m_readyLine, "column " + Printable(m_columns[column].name) + " holds " +
                              Printable(value) + ", which is no whole number" +
                              (error == std::errc::result_out_of_range ? " of 64 bits" : ""));
    }
    if (m_columns[column].type == ColumnType::DATE_TIME && !IsShowableTime(number)) {
        Fail(m_readyLine, "column " + Printable(m_columns[column].name) + " holds " +
                              Printable(value) + ", which is no time between the years 1 and 9999");
    }
    value = std::to_string(number);
}

bool DelimitedReader::Next(Record& record) {
    record.onePage.reset();
    if (!ReadFilledRow(record.values)) {
        return false;
    }
    record.line = m_readyLine;
    m_cellsGiven = record.values.size();
    if (m_shape == RowShape::PADDED) {
        Pad(record.values);
    }
    if (record.values.size() != m_columns.size()) {
        Fail(m_readyLine, "the row has " + std::to_string(record.values.size()) +
                              " cells, but the header has " + std::to_string(m_columns.size()));
    }
    for (size_t i = 0; i < m_columns.size(); ++i) {
        if (m_columns[i].type != ColumnType::TEXT) {
            CheckTyped(i, record.values[i]);
        }
    }
    return true;
}

}  // namespace tallyquist
