// Any bytes as a job log or a table. The first one chooses the options. What the reader of the
// input gives by itself and what the program makes of it must fit.
#include <algorithm>
#include <charconv>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "compatible/Utf8.h"
#include "fuzz/Fuzz.h"
#include "host/input/DelimitedReader.h"
#include "host/input/InputRecognition.h"
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

std::optional<int64_t> NumberOf(std::string_view text) {
    int64_t number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

struct Table {
    std::vector<Column> columns;
    std::vector<Row> rows;
    std::string error;  // that ended it

    template <typename Next>
    void Read(Next next) try {
        for (Row row; next(row);) {
            Check(row.size() == columns.size());
            for (size_t i = 0; i < row.size(); ++i) {
                const std::optional<int64_t> number = NumberOf(row[i]);
                Check(columns[i].type == ColumnType::TEXT || row[i].empty() || number);
                Check(columns[i].type != ColumnType::DATE_TIME ||
                      IsShowableTime(number.value_or(0)));
            }
            rows.push_back(row);
        }
    } catch (const InputError& failure) {
        error = failure.what();
    }

    uint64_t Sum(size_t column) const {
        uint64_t sum = 0;
        for (const Row& row : rows) {
            sum += static_cast<uint64_t>(NumberOf(row[column]).value_or(0));
        }
        return sum;
    }
};

// Throws InputError when one of them refuses the input.
void ReadBothWays(const InputOptions& options, const InputRecognizer& recognizer,
                  const std::function<void(const Finding&)>& check) {
    size_t findings = 0;
    const FindingSink sink = [&](const Finding& finding) {
        ++findings;
        check(finding);
    };
    Table one;
    std::unique_ptr<RecordReader> reader;
    std::optional<size_t> pagesColumn;
    const std::string& path = options.paths.front();
    auto lines = std::make_unique<LineReader>(path);
    const Recognized input = recognizer.Recognize(*lines, [&] { return LineReader::Tail(path); });
    if (input.kind == Recognized::Kind::TABLE) {
        auto table = std::make_unique<DelimitedReader>(std::move(lines), input.separator,
                                                       options.columnTypes);
        one.columns = table->Columns();
        reader = std::move(table);
    } else if (input.kind == Recognized::Kind::PAGE_LOG) {
        auto log =
            std::make_unique<PageLogReader>(std::move(lines), input.formats, options.perPage, sink);
        one.columns = log->Columns();
        pagesColumn = log->PagesColumn();
        reader = std::move(log);
    }
    Record record;
    uint64_t line = 0;
    bool isSummed = false;
    one.Read([&](Row& row) {
        const bool isRead = reader && reader->Next(record);
        Check(record.line >= std::exchange(line, record.line));
        isSummed = isSummed || (isRead && record.onePage);
        row = record.values;
        return isRead;
    });
    const size_t findingsOfOne = std::exchange(findings, 0);
    const auto source = OpenInputs(options, sink, nullptr);
    Table all{.columns = source->Columns(), .rows = {}, .error = {}};
    all.Read([&](Row& row) { return source->Next(row); });
    Check(one.error == all.error && (isSummed || one.rows.size() == all.rows.size()));
    for (size_t i = 0; i < one.rows.size() && !isSummed; ++i) {
        // Behind its columns stand those of the size of the medium.
        Check(std::equal(one.rows[i].begin(), one.rows[i].end(), all.rows[i].begin()));
    }
    // A line whose pages are too many to count is a finding more; an error loses what was summed.
    Check(!pagesColumn || findings > findingsOfOne || !one.error.empty() ||
          one.Sum(*pagesColumn) == all.Sum(*pagesColumn));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) try {
    static const TempFolder folder;
    // Their expressions take much longer to compile than most inputs to read.
    static std::map<size_t, const InputRecognizer> recognizers;
    const size_t choice = size > 0 ? *data % std::size(CHOICES) : 0;
    InputOptions options = CHOICES[choice];
    options.paths = {folder.Path("file")};
    std::string text = TextOf(data, size).erase(0, 1);
    if (options.logFormat == FIRST_LINE) {
        options.logFormat = text.substr(0, text.find('\n'));
        text.erase(0, options.logFormat.size() + 1);
        recognizers.erase(choice);
    }
    WriteFile(options.paths.front(), text);
    const auto feeds = static_cast<uint64_t>(std::ranges::count(text, '\n'));
    const bool isPacked = text.starts_with("\x1F\x8B");
    ReadBothWays(options, recognizers.try_emplace(choice, options).first->second,
                 [&](const Finding& finding) {
                     Check(finding.file == options.paths.front() && finding.line >= 1);
                     Check(isPacked || finding.line <= feeds + 1);
                     Check(finding.text.find('\n') == std::string::npos);
                     // The names of a format are its user's own.
                     Check(IsUtf8(finding.text) || !IsUtf8(options.logFormat));
                 });
    return 0;
} catch (const tallyquist::InputError&) {
    return 0;  // refused
}
