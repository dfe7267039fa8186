// Makes records of the lines of a page log and reports lines that deserve a look.
#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/input/LineReader.h"
#include "host/input/PageLogMatcher.h"
#include "host/input/RecentNumbers.h"
#include "host/input/Record.h"

namespace tallyquist {

// The print server writes one record per line, but a line break in a job's name breaks the line
// too, and it cuts every record at MAX_RECORD bytes. So a line that is no complete record is joined
// with those behind it when that completes it, and a line inside such a record that looks like one
// and is older than the record is taken for what it is: a part of the name. One that is not older
// may as well be the next record below one that was cut, so it is kept.
class PageLogReader : public RecordReader {
public:
    static constexpr size_t MAX_RECORD = 2047;
    static constexpr int64_t OUT_OF_ORDER_SECONDS = 60;

    // `formats` are those that the log changes between, the one it begins with first. The columns
    // are those of all of them.
    PageLogReader(std::unique_ptr<LineReader> lines, const std::vector<MatcherPair>& formats,
                  bool perPage, FindingSink findings);

    const std::vector<Column>& Columns() const { return m_columns; }
    std::optional<size_t> PagesColumn() const { return m_pagesColumn; }

    bool Next(Record& record) override;
    uint64_t BytesRead() const override { return m_lines->BytesRead(); }

private:
    // One or more lines that are one record, and how they were read.
    struct Entry {
        std::string text;
        uint64_t firstLine = 0;
        size_t lineCount = 1;
        bool cut = false;
        std::string cutReason;
        bool doubtful = false;  // may be a part of the cut record above it
        Reading reading;
    };

    struct Format {
        MatcherPair matchers;
        std::vector<size_t> columnOf;         // by field
        std::vector<FieldKind> kinds;         // by field
        std::vector<std::string> fieldNames;  // by field
        size_t jobField = 0;
        std::optional<size_t> pageField;
        std::optional<size_t> countField;
        bool used = false;
        RecentNumbers jobs{};  // that were logged as a whole
    };

    void AddFormat(const MatcherPair& matchers, bool perPage);
    size_t AddColumn(const Column& column);
    bool ChangeFormat();
    bool StartsRecord(const std::string& text) const;
    bool MayBeGenuine(const std::string& text, std::optional<int64_t> above) const;
    bool ConfirmsFormat(const Format& format);
    bool TakeLine(Line& line);
    Line* LookAhead(size_t index);
    void DropAhead(size_t count);
    bool ReadEntry(Line& line);
    bool JoinFollowingLines();
    void JoinStrayLines();
    void ReadCutEntry(const Line& line);
    bool Accept(Record& record);
    bool FillValues(Record& record, std::optional<int64_t>& time);
    bool FillValue(size_t i, std::string& value, std::optional<int64_t>& time) const;
    void CountPages(Record& record, const std::vector<std::string_view>& fields);
    void CheckEntry(const std::optional<int64_t>& time);
    bool ReportForgery();
    bool ReportEarlyTime(const std::optional<int64_t>& time) const;
    bool RepeatsJob();
    void ReportAmbiguity();
    void Report(Finding::Kind kind, uint64_t line, std::string text) const;
    static bool Usable(const Line& line);

    std::unique_ptr<LineReader> m_lines;
    std::vector<Format> m_formats;
    Format* m_format = nullptr;                 // of the current entry
    const PageLogMatcher* m_matcher = nullptr;  // the one of its two that fits the current entry
    FindingSink m_findings;
    std::vector<Column> m_columns;
    std::optional<size_t> m_pagesColumn;
    std::deque<Line> m_ahead;
    Line m_line;
    Entry m_entry;
    std::optional<int64_t> m_lastTime;
    uint64_t m_doubtfulUntil = 0;  // the last line that may belong to a record given up as cut
};

}  // namespace tallyquist
