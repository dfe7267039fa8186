// Opens the inputs of one export as one source of rows. External interface: OpenInputs.
#include "host/input/Inputs.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <deque>
#include <optional>
#include <set>
#include <unordered_map>
#include <utility>

#include "host/common/Printable.h"
#include "host/input/DelimitedReader.h"
#include "host/input/InputRecognition.h"
#include "host/input/JobSummer.h"
#include "host/input/LineReader.h"
#include "host/input/MediaSize.h"
#include "host/input/PageLogReader.h"
#include "host/input/Record.h"

namespace tallyquist {
namespace {

// Columns of one input in the table of all inputs.
struct ColumnMap {
    std::vector<size_t> toUnion;                 // by column of the input
    std::optional<size_t> media, width, height;  // columns of the table
};

struct Input {
    std::string path;
    Recognized recognized;
    std::vector<Column> columns;        // of the reader
    std::optional<size_t> pagesColumn;  // of the reader
    std::vector<size_t> jobColumns;     // of the reader: what tells one job from another
    ColumnMap map;
    uint64_t size = 0;     // 0: unknown
    bool regular = false;  // can be opened again, so nothing is kept open until it is read
    std::unique_ptr<RecordReader> reader;
};

// Sets what is known of the file, and refuses one that was named before under whatever name.
void Inspect(Input& input, std::set<std::pair<dev_t, ino_t>>& known) {
    struct stat status {};
    const int result =
        input.path == "-" ? fstat(STDIN_FILENO, &status) : stat(input.path.c_str(), &status);
    if (result != 0) {
        throw InputError(InputName(input.path) + ": " + std::strerror(errno));
    }
    // A device such as the null device holds nothing that could be counted twice.
    if (!S_ISCHR(status.st_mode) || input.path == "-") {
        if (!known.insert({status.st_dev, status.st_ino}).second) {
            throw InputError(InputName(input.path) + ": is given twice");
        }
    }
    input.regular = S_ISREG(status.st_mode) && input.path != "-";
    input.size = S_ISREG(status.st_mode) ? static_cast<uint64_t>(status.st_size) : 0;
}

// Page logs go in the order of their first record and take the places of page logs among the
// inputs. Those without a time stay behind the others.
void SortPageLogs(std::vector<Input>& inputs) {
    std::vector<Input> logs;
    for (Input& input : inputs) {
        if (input.recognized.kind == Recognized::Kind::PAGE_LOG) {
            logs.push_back(std::move(input));
        }
    }
    std::ranges::stable_sort(logs, [](const Input& a, const Input& b) {
        const std::optional<int64_t> first = a.recognized.firstTime;
        const std::optional<int64_t> second = b.recognized.firstTime;
        return first && (!second || *first < *second);
    });
    auto next = logs.begin();
    for (Input& input : inputs) {
        if (input.recognized.kind == Recognized::Kind::PAGE_LOG) {
            input = std::move(*next++);
        }
    }
}

std::optional<size_t> FindColumn(const std::vector<Column>& columns, std::string_view name) {
    const auto found = std::ranges::find(columns, name, &Column::name);
    if (found == columns.end()) {
        return std::nullopt;
    }
    return static_cast<size_t>(found - columns.begin());
}

class AllInputs : public RowSource {
public:
    AllInputs(const InputOptions& options, FindingSink findings, Progress* progress)
        : m_options(options), m_findings(std::move(findings)), m_progress(progress) {
        if (m_options.paths.empty()) {
            m_options.paths.emplace_back("-");
        }
        OpenAll();
        SortPageLogs(m_inputs);
        for (Input& input : m_inputs) {
            AddColumns(input);
        }
        CheckTypedColumns();
    }

    const std::vector<Column>& Columns() const override { return m_columns; }
    bool Next(Row& row) override;

private:
    void OpenAll();
    void MakeReader(Input& input, std::unique_ptr<LineReader> lines);
    void AddColumns(Input& input);
    size_t AddColumn(const Column& column, const std::string& inputName);
    void CheckTypedColumns() const;
    bool NextRecord();
    void MapRow(const Input& input, Row& row);
    void FillMediaSize(const ColumnMap& map, Row& row);
    void AddPage(const Input& input, Row row);

    InputOptions m_options;
    FindingSink m_findings;
    Progress* m_progress;
    std::vector<Input> m_inputs;
    std::vector<Column> m_columns;
    size_t m_current = 0;
    uint64_t m_bytesDone = 0;
    Record m_record;
    JobSummer m_summer;
    bool m_summing = false;
    std::deque<Row> m_finished;
    std::unordered_map<std::string, std::pair<std::string, std::string>> m_mediaSizes;
};

void AllInputs::OpenAll() {
    const InputRecognizer recognizer(m_options);
    std::set<std::pair<dev_t, ino_t>> known;
    uint64_t total = 0;
    bool totalKnown = true;
    for (const std::string& path : m_options.paths) {
        Input input;
        input.path = path;
        Inspect(input, known);
        auto lines = std::make_unique<LineReader>(path);
        input.recognized = recognizer.Recognize(
            *lines, [&] { return input.regular ? LineReader::Tail(path) : std::string(); });
        if (input.recognized.kind != Recognized::Kind::EMPTY) {
            total += input.size;
            totalKnown = totalKnown && input.regular;
            MakeReader(input, std::move(lines));
            if (input.regular) {
                input.reader.reset();
            }
            m_inputs.push_back(std::move(input));
        }
    }
    if (m_inputs.empty()) {
        throw InputError(
            InputName(m_options.paths.front()) +
            (m_options.paths.size() == 1 ? ": is empty" : ": is empty, as are all other inputs"));
    }
    if (m_progress != nullptr) {
        *m_progress = {.bytesRead = 0, .bytesTotal = totalKnown ? total : 0};
    }
}

void AllInputs::MakeReader(Input& input, std::unique_ptr<LineReader> lines) {
    if (input.recognized.kind == Recognized::Kind::TABLE) {
        auto reader = std::make_unique<DelimitedReader>(
            std::move(lines), input.recognized.separator, m_options.columnTypes);
        input.columns = reader->Columns();
        input.reader = std::move(reader);
        return;
    }
    auto reader = std::make_unique<PageLogReader>(std::move(lines), input.recognized.formats,
                                                  m_options.perPage, m_findings);
    input.columns = reader->Columns();
    input.pagesColumn = reader->PagesColumn();
    input.jobColumns.clear();
    // The name too, for job numbers may begin again.
    for (const std::string_view name : {"printer", "user", "job", "name"}) {
        if (const std::optional<size_t> column = FindColumn(input.columns, name)) {
            input.jobColumns.push_back(*column);
        }
    }
    input.reader = std::move(reader);
}

size_t AllInputs::AddColumn(const Column& column, const std::string& inputName) {
    const std::optional<size_t> known = FindColumn(m_columns, column.name);
    if (!known) {
        m_columns.push_back(column);
        return m_columns.size() - 1;
    }
    if (m_columns[*known].type != column.type) {
        throw InputError(inputName + ": its column " + Printable(column.name) +
                         " has another type than the column of that name in an input before it");
    }
    return *known;
}

void AllInputs::AddColumns(Input& input) {
    const std::string name = InputName(input.path);
    for (const Column& column : input.columns) {
        input.map.toUnion.push_back(AddColumn(column, name));
    }
    const std::optional<size_t> media = FindColumn(input.columns, "media");
    if (media && !FindColumn(input.columns, "width_mm") &&
        !FindColumn(input.columns, "height_mm")) {
        input.map.media = input.map.toUnion[*media];
        input.map.width = AddColumn({.name = "width_mm"}, name);
        input.map.height = AddColumn({.name = "height_mm"}, name);
    }
}

void AllInputs::CheckTypedColumns() const {
    for (const auto& [name, type] : m_options.columnTypes) {
        std::string known;
        bool found = false;
        for (const Input& input : m_inputs) {
            if (input.recognized.kind != Recognized::Kind::TABLE) {
                continue;
            }
            for (const Column& column : input.columns) {
                found = found || column.name == name;
                known += (known.empty() ? "" : ", ") + Printable(column.name);
            }
        }
        if (!found) {
            throw OptionError("no table has a column " + Printable(name) +
                              (known.empty() ? "; the inputs are page logs, whose types are known"
                                             : "; there are " + known));
        }
    }
}

// Reads the next record of the current input; at its end goes on to the next one. False at the end
// of all.
bool AllInputs::NextRecord() {
    for (; m_current < m_inputs.size(); ++m_current) {
        Input& input = m_inputs[m_current];
        if (!input.reader) {
            MakeReader(input, std::make_unique<LineReader>(input.path));
        }
        const bool found = input.reader->Next(m_record);
        if (m_progress != nullptr) {
            m_progress->bytesRead = m_bytesDone + input.reader->BytesRead();
        }
        if (found) {
            return true;
        }
        m_bytesDone += input.reader->BytesRead();
        input.reader.reset();
    }
    return false;
}

void AllInputs::FillMediaSize(const ColumnMap& map, Row& row) {
    const std::string& name = row[*map.media];
    auto known = m_mediaSizes.find(name);
    if (known == m_mediaSizes.end()) {
        // There are few names in a log, unless somebody makes them up.
        if (m_mediaSizes.size() >= 256) {
            m_mediaSizes.clear();
        }
        std::pair<std::string, std::string> texts;
        if (const std::optional<MediaSize> size = ResolveMedia(name)) {
            texts = {FormatMillimetres(size->width), FormatMillimetres(size->height)};
        }
        known = m_mediaSizes.emplace(name, std::move(texts)).first;
    }
    row[*map.width] = known->second.first;
    row[*map.height] = known->second.second;
}

void AllInputs::MapRow(const Input& input, Row& row) {
    row.resize(m_columns.size());
    std::ranges::for_each(row, [](std::string& value) { value.clear(); });
    for (size_t i = 0; i < input.map.toUnion.size(); ++i) {
        row[input.map.toUnion[i]].swap(m_record.values[i]);
    }
    if (input.map.media) {
        FillMediaSize(input.map, row);
    }
}

void AllInputs::AddPage(const Input& input, Row row) {
    std::string key;
    for (const size_t column : input.jobColumns) {
        key += row[input.map.toUnion[column]];
        key += '\0';
    }
    m_summing = true;
    if (!m_summer.Add(key, std::move(row), input.map.toUnion[*input.pagesColumn], *m_record.onePage,
                      m_finished) &&
        m_findings) {
        m_findings({.kind = Finding::Kind::UNREADABLE,
                    .file = InputName(input.path),
                    .line = m_record.line,
                    .text = "makes the pages of its job too many to count; left out"});
    }
}

bool AllInputs::Next(Row& row) {
    for (;;) {
        if (!m_finished.empty()) {
            row = std::move(m_finished.front());
            m_finished.pop_front();
            return true;
        }
        if (!NextRecord()) {
            if (!m_summing) {
                return false;
            }
            m_summing = false;
            m_summer.Flush(m_finished);
            continue;
        }
        const Input& input = m_inputs[m_current];
        MapRow(input, row);
        if (m_record.onePage) {
            AddPage(input, row);
        } else if (m_summing) {
            m_summing = false;
            m_summer.Flush(m_finished);
            m_finished.push_back(row);
        } else {
            return true;
        }
    }
}

}  // namespace

std::unique_ptr<RowSource> OpenInputs(const InputOptions& options, FindingSink findings,
                                      Progress* progress) {
    return std::make_unique<AllInputs>(options, std::move(findings), progress);
}

}  // namespace tallyquist
