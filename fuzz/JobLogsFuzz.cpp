// Any bytes as a job log or a table. The first one chooses the options. What the reader of the
// input gives by itself and what all readers together make of it must fit.
#include <algorithm>
#include <charconv>
#include <map>
#include <memory>
#include <numeric>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "compatible/Utf8.h"
#include "fuzz/Fuzz.h"
#include "host/input/DelimitedReader.h"
#include "host/input/InputRecognition.h"
#include "host/input/Inputs.h"
#include "host/input/PageLogReader.h"
#include "tests/support/TempFolder.h"

namespace {

using namespace tallyquist;

const std::string FIRST_LINE = "-";  // of the input, as the format of the lines behind it

const InputOptions CHOICES[] = {
    {},
    {.perPage = true},
    {.kind = InputKind::PAGE_LOG},
    {.kind = InputKind::PAGE_LOG, .logFormat = FIRST_LINE},
    {.kind = InputKind::PAGE_LOG, .logFormat = FIRST_LINE, .perPage = true},
    {.kind = InputKind::CSV},
    {.kind = InputKind::TSV},
    {.columnTypes = {{"time", ColumnType::DATE_TIME}, {"span", ColumnType::TIME_SPAN}}},
};

struct Result {
    std::vector<Column> columns;
    std::vector<Row> rows;
    std::string error;
    bool isSummed = false;
    size_t pagesColumn = 0;
};

bool IsValueOf(ColumnType type, std::string_view value) {
    int64_t number = 0;
    const char* end = value.data() + value.size();
    const auto [stop, error] = std::from_chars(value.data(), end, number);
    return type == ColumnType::TEXT || value.empty() ||
           (error == std::errc() && stop == end &&
            (type == ColumnType::TIME_SPAN || IsShowableTime(number)));
}

// Calls `next` for one row after the other.
template <typename Next>
void ReadRows(Result& result, Next next) try {
    for (Row row; next(row);) {
        Check(row.size() == result.columns.size());
        for (size_t i = 0; i < row.size(); ++i) {
            Check(IsValueOf(result.columns[i].type, row[i]));
        }
        result.rows.push_back(row);
    }
} catch (const InputError& error) {
    result.error = error.what();
}

template <typename Reader>
void ReadRecords(Result& result, Reader& reader) {
    uint64_t line = 1;
    ReadRows(result, [&](Row& row) {
        Record record;
        if (!reader.Next(record)) {
            return false;
        }
        Check(record.line >= line);
        line = record.line;
        result.isSummed = result.isSummed || record.onePage;
        row = record.values;
        return true;
    });
}

std::vector<Row> RowsOf(const std::string& text, char separator, const InputOptions& options,
                        RowShape shape) {
    DelimitedReader reader(std::make_unique<LineReader>("text", text), separator,
                           options.columnTypes, shape);
    Result result{.columns = reader.Columns()};
    ReadRecords(result, reader);
    return result.rows;
}

// With every cell quoted.
std::string Written(const std::vector<Row>& rows, char separator) {
    std::string text;
    for (const Row& row : rows) {
        for (const std::string& cell : row) {
            text += '"';
            for (const char c : cell) {
                text.append(c == '"' ? 2 : 1, c);
            }
            text.append("\"").append(&cell == &row.back() ? "\n" : std::string(1, separator));
        }
    }
    return text;
}

// Rows survive being written; a lenient reader takes them too, but those without any text.
void CheckTable(const Result& table, char separator, const InputOptions& options) {
    std::vector<Row> rows = table.rows;
    Row header;
    std::ranges::transform(table.columns, std::back_inserter(header), &Column::name);
    const std::string text = Written({header}, separator) + Written(rows, separator);
    Check(RowsOf(text, separator, options, RowShape::EXACT) == rows);
    if (!header.front().empty() || header.size() > 1) {
        std::erase_if(rows, [](const Row& row) {
            return std::ranges::all_of(row, [](const std::string& cell) { return cell.empty(); });
        });
        Check(RowsOf(text, separator, options, RowShape::PADDED) == rows);
    }
}

// The sum over all rows; pages of jobs that do not tell them are none.
uint64_t Pages(const std::vector<Row>& rows, size_t column) {
    return std::accumulate(
        rows.begin(), rows.end(), uint64_t{0}, [&](uint64_t sum, const Row& row) {
            uint64_t pages = 0;
            std::from_chars(row[column].data(), row[column].data() + row[column].size(), pages);
            return sum + pages;
        });
}

// Throws InputError when the input is refused.
Result ReadAlone(const InputOptions& options, const InputRecognizer& recognizer,
                 const FindingSink& sink) {
    const std::string& path = options.paths.front();
    auto lines = std::make_unique<LineReader>(path);
    const Recognized input = recognizer.Recognize(*lines, [&] { return LineReader::Tail(path); });
    Result result;
    if (input.kind == Recognized::Kind::TABLE) {
        DelimitedReader reader(std::move(lines), input.separator, options.columnTypes);
        result.columns = reader.Columns();
        ReadRecords(result, reader);
        CheckTable(result, input.separator, options);
    } else if (input.kind == Recognized::Kind::PAGE_LOG) {
        PageLogReader reader(std::move(lines), input.formats, options.perPage, sink);
        result.columns = reader.Columns();
        result.pagesColumn = reader.PagesColumn().value_or(0);
        ReadRecords(result, reader);
    }
    return result;
}

// `one` is what the reader of the only input gave, with so many findings, `all` what comes of it.
void CheckSame(const Result& one, size_t findings, const Result& all, size_t allFindings) {
    Check(one.error == all.error);
    if (one.isSummed) {
        // A line whose pages are too many to count is a finding more.
        Check(findings < allFindings ||
              Pages(one.rows, one.pagesColumn) == Pages(all.rows, one.pagesColumn));
        return;
    }
    Check(findings == allFindings && one.rows.size() == all.rows.size());
    for (size_t i = 0; i < one.rows.size(); ++i) {
        // Behind its columns stand those of the size of the medium.
        Check(std::equal(one.rows[i].begin(), one.rows[i].end(), all.rows[i].begin()));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) try {
    static const TempFolder folder;
    // Their expressions take much longer to compile than most inputs to read.
    static std::map<size_t, const InputRecognizer> recognizers;
    if (size == 0) {
        return 0;
    }
    const size_t choice = *data % std::size(CHOICES);
    InputOptions options = CHOICES[choice];
    options.paths = {folder.Path("file")};
    std::string text = TextOf(data + 1, size - 1);
    if (options.logFormat == FIRST_LINE) {
        options.logFormat = text.substr(0, text.find('\n'));
        text.erase(0, options.logFormat.size() + 1);
        recognizers.erase(choice);
    }
    WriteFile(options.paths.front(), text);
    const bool isPacked = text.starts_with("\x1F\x8B");
    const auto feeds = static_cast<uint64_t>(std::ranges::count(text, '\n'));

    size_t findings = 0;
    const FindingSink sink = [&](const Finding& finding) {
        ++findings;
        Check(finding.file == options.paths.front() && finding.line >= 1);
        Check(isPacked || finding.line <= feeds + 1);
        // The names of a format are its user's own.
        Check(IsUtf8(finding.text) || !IsUtf8(options.logFormat));
        Check(finding.text.find('\n') == std::string::npos);
    };
    const auto recognizer = recognizers.try_emplace(choice, options).first;
    const Result one = ReadAlone(options, recognizer->second, sink);
    const size_t findingsOfOne = std::exchange(findings, 0);
    const auto source = OpenInputs(options, sink, nullptr);
    Result all;
    all.columns = source->Columns();
    ReadRows(all, [&](Row& row) { return source->Next(row); });
    CheckSame(one, findingsOfOne, all, findings);
    return 0;
} catch (const tallyquist::InputError&) {
    return 0;  // refused
}
