// Makes records of the lines of a page log. External interface: PageLogReader.
#include "host/input/PageLogReader.h"

#include <algorithm>
#include <utility>

#include "host/common/Printable.h"
#include "host/common/WholeNumber.h"
#include "host/input/LogTime.h"

namespace tallyquist {
namespace {

bool IsBlank(std::string_view text) {
    return text.find_first_not_of(" \t") == std::string_view::npos;
}

// A cut at a fixed number of bytes may go through a character.
void DropBrokenCharacter(std::string& text) {
    const auto byte = [&](size_t back) {
        return static_cast<unsigned char>(text[text.size() - back]);
    };
    for (size_t back = 1; back <= std::min<size_t>(3, text.size()); ++back) {
        if ((byte(back) & 0xC0U) == 0x80U) {
            continue;
        }
        const size_t length = byte(back) >= 0xF0 ? 4 : byte(back) >= 0xE0 ? 3 : 2;
        if (byte(back) >= 0xC0 && length > back) {
            text.erase(text.size() - back);
        }
        return;
    }
}

}  // namespace

PageLogReader::PageLogReader(std::unique_ptr<LineReader> lines,
                             const std::vector<MatcherPair>& formats, bool perPage,
                             FindingSink findings)
    : m_lines(std::move(lines)), m_findings(std::move(findings)) {
    for (const MatcherPair& matchers : formats) {
        AddFormat(matchers, perPage);
    }
    m_format = &m_formats.front();
    m_format->used = true;
}

void PageLogReader::AddFormat(const MatcherPair& matchers, bool perPage) {
    const PageLogFormat& text = matchers.bare->Format();
    const RecordLayout layout = LayOut(text, perPage);
    Format format{.matchers = matchers,
                  .columnOf = {},
                  .kinds = {},
                  .fieldNames = {},
                  .jobField = text.FieldOf(FieldKind::JOB).value(),
                  .pageField = text.FieldOf(FieldKind::PAGE),
                  .countField = text.FieldOf(FieldKind::COUNT)};
    for (const size_t column : layout.columnOf) {
        format.columnOf.push_back(AddColumn(layout.columns[column]));
    }
    for (const FormatPart& part : text.parts) {
        if (part.IsField()) {
            format.kinds.push_back(part.kind);
            format.fieldNames.push_back(part.column);
        }
    }
    if (layout.pagesColumn) {
        m_pagesColumn = AddColumn(layout.columns[*layout.pagesColumn]);
    }
    m_formats.push_back(std::move(format));
}

size_t PageLogReader::AddColumn(const Column& column) {
    const auto known = std::ranges::find(m_columns, column.name, &Column::name);
    if (known != m_columns.end()) {
        return static_cast<size_t>(known - m_columns.begin());
    }
    m_columns.push_back(column);
    return m_columns.size() - 1;
}

void PageLogReader::Report(Finding::Kind kind, uint64_t line, std::string text) const {
    if (m_findings) {
        m_findings({.kind = kind, .file = m_lines->Name(), .line = line, .text = std::move(text)});
    }
}

bool PageLogReader::Usable(const Line& line) {
    return !line.tooLong && line.text.find('\0') == std::string::npos;
}

bool PageLogReader::TakeLine(Line& line) {
    if (m_ahead.empty()) {
        return m_lines->Next(line);
    }
    line = std::move(m_ahead.front());
    m_ahead.pop_front();
    return true;
}

// The line `index` lines behind the one that was taken last; null when the log ends before it.
Line* PageLogReader::LookAhead(size_t index) {
    while (m_ahead.size() <= index) {
        Line line;
        if (!m_lines->Next(line)) {
            return nullptr;
        }
        m_ahead.push_back(std::move(line));
    }
    return &m_ahead[index];
}

void PageLogReader::DropAhead(size_t count) {
    m_ahead.erase(m_ahead.begin(), m_ahead.begin() + static_cast<std::ptrdiff_t>(count));
}

bool PageLogReader::Next(Record& record) {
    while (TakeLine(m_line)) {
        if (!m_line.tooLong && IsBlank(m_line.text)) {
            continue;
        }
        if (!Usable(m_line)) {
            Report(Finding::Kind::UNREADABLE, m_line.number,
                   m_line.tooLong ? "is longer than a line of a log can be; left out"
                                  : "holds NUL bytes; left out");
            continue;
        }
        if (ReadEntry(m_line) && Accept(record)) {
            return true;
        }
    }
    return false;
}

// Makes the line, and those behind it that belong to it, the current entry. False when there is no
// record in it.
bool PageLogReader::ReadEntry(Line& line) {
    m_entry.text.swap(line.text);
    m_entry.firstLine = line.number;
    m_entry.lineCount = 1;
    m_entry.cut = false;
    m_entry.doubtful = line.number <= m_doubtfulUntil;
    // Somebody may have put quotes around the format, or taken them away, while the log was
    // growing.
    m_matcher = &m_format->matchers.For(m_entry.text);
    if (m_matcher->Match(m_entry.text, m_entry.reading) || ChangeFormat()) {
        if (m_matcher->EndsInFreeText()) {
            JoinStrayLines();
        }
        return true;
    }
    if (!m_matcher->StartsRecord(m_entry.text)) {
        Report(Finding::Kind::UNREADABLE, line.number,
               "is not a record of this log: " + Printable(m_entry.text) + "; left out");
        return false;
    }
    if (m_entry.text.size() < MAX_RECORD && JoinFollowingLines()) {
        return true;
    }
    ReadCutEntry(line);
    return m_entry.cut;
}

// An administrator may change the format while the log is growing. Then the line fits one of the
// other formats, and so does the one behind it; a single line in another format is more likely a
// part of a job's name that somebody made up.
bool PageLogReader::ChangeFormat() {
    if (m_formats.size() == 1 || m_matcher->StartsRecord(m_entry.text)) {
        return false;
    }
    for (Format& format : m_formats) {
        const PageLogMatcher& matcher = format.matchers.For(m_entry.text);
        if (&format == m_format || !matcher.Match(m_entry.text, m_entry.reading) ||
            !ConfirmsFormat(format)) {
            continue;
        }
        if (format.used) {
            Report(
                Finding::Kind::FORGED, m_entry.firstLine,
                "is in the format that the log had before, so the lines in the other format may be "
                "made up; kept");
        }
        format.used = true;
        m_format = &format;
        m_matcher = &matcher;
        return true;
    }
    return false;
}

// In any of the formats of this log.
bool PageLogReader::StartsRecord(const std::string& text) const {
    return std::ranges::any_of(m_formats, [&](const Format& format) {
        return format.matchers.For(text).StartsRecord(text);
    });
}

// Whether the line, below an incomplete record that ended at the time `above`, looks like a record
// that was written behind it. A server that writes one later writes no earlier time.
bool PageLogReader::MayBeGenuine(const std::string& text, std::optional<int64_t> above) const {
    const bool begins = std::ranges::any_of(m_formats, [&](const Format& format) {
        const PageLogMatcher& matcher = format.matchers.For(text);
        return matcher.Format().PartOf(FieldKind::TIME) && matcher.StartsRecord(text);
    });
    const std::optional<int64_t> time = begins ? FindLogTime(text) : std::nullopt;
    return time && (!above || *time >= *above);
}

bool PageLogReader::ConfirmsFormat(const Format& format) {
    const Line* next = LookAhead(0);
    return next == nullptr ||
           (Usable(*next) && format.matchers.For(next->text).StartsRecord(next->text));
}

// True when the lines behind complete the entry. Lines that add up to exactly the length at which
// records are cut belong to it too, but leave it incomplete. A line that may be the next record is
// not joined, for then its pages would be lost.
bool PageLogReader::JoinFollowingLines() {
    const std::optional<int64_t> time = FindLogTime(m_entry.text);
    std::string joined = m_entry.text;
    for (size_t count = 0; const Line* next = LookAhead(count); ++count) {
        if (!Usable(*next) || joined.size() + 1 + next->text.size() > MAX_RECORD) {
            return false;
        }
        if (MayBeGenuine(next->text, time)) {
            m_doubtfulUntil = next->number;
            return false;
        }
        joined += '\n';
        joined += next->text;
        const bool complete = m_matcher->Completes(joined);
        if (complete || joined.size() == MAX_RECORD) {
            m_entry.text = std::move(joined);
            m_entry.lineCount = count + 2;
            DropAhead(count + 1);
            return complete && m_matcher->Match(m_entry.text, m_entry.reading);
        }
    }
    return false;
}

// In a format that ends in a free text every line is complete, and a line that does not look like a
// record can only be more of the text above it.
void PageLogReader::JoinStrayLines() {
    const size_t before = m_entry.text.size();
    size_t count = 0;
    while (const Line* next = LookAhead(count)) {
        if (!Usable(*next) || IsBlank(next->text) || StartsRecord(next->text) ||
            m_entry.text.size() + 1 + next->text.size() > MAX_RECORD) {
            break;
        }
        m_entry.text += '\n';
        m_entry.text += next->text;
        ++count;
    }
    DropAhead(count);
    m_entry.lineCount += count;
    m_entry.cut = m_entry.text.size() >= MAX_RECORD;
    if (m_entry.cut) {
        m_entry.cutReason = "after " + std::to_string(m_entry.text.size()) + " bytes";
        DropBrokenCharacter(m_entry.text);
    }
    if (m_entry.text.size() != before) {
        m_matcher->Match(m_entry.text, m_entry.reading);
    }
}

void PageLogReader::ReadCutEntry(const Line& line) {
    if (m_entry.text.size() >= MAX_RECORD) {
        m_entry.cutReason = "after " + std::to_string(m_entry.text.size()) + " bytes";
        DropBrokenCharacter(m_entry.text);
    } else {
        m_entry.cutReason = line.end.empty() ? "where the log ends" : "before its last fields";
    }
    m_entry.cut = m_matcher->MatchCut(m_entry.text, m_entry.reading);
    if (!m_entry.cut) {
        Report(Finding::Kind::UNREADABLE, m_entry.firstLine,
               "ends before the job and its pages are complete: " + Printable(m_entry.text) +
                   "; left out");
    }
}

bool PageLogReader::Accept(Record& record) {
    record.line = m_entry.firstLine;
    std::optional<int64_t> time;
    if (!FillValues(record, time)) {
        return false;
    }
    CheckEntry(time);
    return true;
}

bool PageLogReader::FillValues(Record& record, std::optional<int64_t>& time) {
    const std::vector<std::string_view>& fields = m_entry.reading.fields;
    record.values.resize(m_columns.size());
    if (m_formats.size() > 1) {
        std::ranges::for_each(record.values, [](std::string& value) { value.clear(); });
    }
    for (size_t i = 0; i < fields.size(); ++i) {
        std::string& value = record.values[m_format->columnOf[i]];
        value.assign(fields[i]);
        if (!FillValue(i, value, time)) {
            return false;
        }
    }
    CountPages(record, fields);
    return true;
}

// Turns the text of a field into the value of its column.
bool PageLogReader::FillValue(size_t i, std::string& value, std::optional<int64_t>& time) const {
    const std::string_view field = m_entry.reading.fields[i];
    const FieldKind kind = m_format->kinds[i];
    if (kind == FieldKind::TIME) {
        const std::optional<int64_t> seconds = ParseLogTime(field);
        if (!seconds && !field.empty()) {
            Report(Finding::Kind::UNREADABLE, m_entry.firstLine,
                   "has the impossible time " + Printable(field) + "; left out");
            return false;
        }
        value = seconds ? std::to_string(*seconds) : "";
        time = time ? time : seconds;
    } else if (kind == FieldKind::EPOCH) {
        // It may also be the time of something that did not happen.
        const std::optional<int64_t> seconds = WholeNumber<int64_t>(field);
        if (!seconds || !IsShowableTime(*seconds)) {
            value.clear();
        }
    } else if ((kind == FieldKind::JOB || kind == FieldKind::COUNT ||
                (kind == FieldKind::PAGE && field != "total")) &&
               !WholeNumber<int64_t>(field)) {
        Report(Finding::Kind::UNREADABLE, m_entry.firstLine,
               "has a number too large to count with in " + m_format->fieldNames[i] + ", " +
                   Printable(field) + "; left out");
        return false;
    }
    return true;
}

void PageLogReader::CountPages(Record& record, const std::vector<std::string_view>& fields) {
    record.onePage.reset();
    if (!m_pagesColumn) {
        return;
    }
    std::string& pages = record.values[*m_pagesColumn];
    pages.assign(m_format->countField ? fields[*m_format->countField] : "");
    if (m_format->pageField && fields[*m_format->pageField] != "total") {
        record.onePage =
            m_format->countField ? WholeNumber<int64_t>(fields[*m_format->countField]) : 1;
        pages = std::to_string(record.onePage.value_or(0));
    }
}

void PageLogReader::CheckEntry(const std::optional<int64_t>& time) {
    if (m_entry.cut) {
        Report(Finding::Kind::CUT, m_entry.firstLine,
               "ends too early, " + m_entry.cutReason + "; what is there was taken");
    }
    if (m_entry.doubtful) {
        Report(Finding::Kind::FORGED, m_entry.firstLine,
               "stands below a record that ends too early, so it may be a part of its text; kept");
    }
    const bool forged = ReportForgery() || ReportEarlyTime(time);
    if (RepeatsJob()) {
        Report(Finding::Kind::FORGED, m_entry.firstLine,
               "has the number of a job that was logged before, so one of the two may be made up; "
               "kept");
    }
    if (m_entry.reading.ambiguous && !forged && !m_entry.cut) {
        ReportAmbiguity();
    }
    m_lastTime = time ? time : m_lastTime;
}

// Only free texts can hold what looks like another record.
bool PageLogReader::ReportForgery() {
    bool found = false;
    const std::string_view text = m_entry.text;
    size_t begin = 0;
    for (size_t i = 1; i < m_entry.lineCount; ++i) {
        begin = text.find('\n', begin) + 1;
        const std::string_view line = text.substr(begin, text.find('\n', begin) - begin);
        if (m_matcher->StartsRecord(line)) {
            found = true;
            Report(Finding::Kind::FORGED, m_entry.firstLine + i,
                   "looks like a record but is a part of the one above it, whose text holds a line "
                   "break; not counted as a job");
        }
    }
    for (size_t i = 0; i < m_format->kinds.size() && !found; ++i) {
        const std::string_view field = m_entry.reading.fields[i];
        const size_t at = IsFreeText(m_format->kinds[i]) ? m_matcher->FindRecordInside(field)
                                                         : std::string_view::npos;
        if (at != std::string_view::npos) {
            found = true;
            const auto line = std::count(text.data(), field.data() + at, '\n');
            Report(Finding::Kind::FORGED, m_entry.firstLine + static_cast<uint64_t>(line),
                   "has what looks like another record in its " + m_format->fieldNames[i] + ", " +
                       Printable(field.substr(at)) + "; read as one job");
        }
    }
    return found;
}

bool PageLogReader::ReportEarlyTime(const std::optional<int64_t>& time) const {
    if (!time || !m_lastTime || *time >= *m_lastTime - OUT_OF_ORDER_SECONDS) {
        return false;
    }
    Report(Finding::Kind::FORGED, m_entry.firstLine,
           "ended " + std::to_string(*m_lastTime - *time) +
               " seconds before the record above it, so it may be made up; kept");
    return true;
}

// A server logs a whole job once. Pages have one line each, with the number of their job.
bool PageLogReader::RepeatsJob() {
    const std::vector<std::string_view>& fields = m_entry.reading.fields;
    if (!m_format->pageField || fields[*m_format->pageField] != "total") {
        return false;
    }
    const std::optional<int64_t> job = WholeNumber<int64_t>(fields[m_format->jobField]);
    return job && !m_format->jobs.Add(static_cast<uint64_t>(*job));
}

void PageLogReader::ReportAmbiguity() {
    const Reading& reading = m_entry.reading;
    size_t i = 0;
    while (i + 1 < reading.fields.size() && reading.fields[i] == reading.otherFields[i]) {
        ++i;
    }
    Report(Finding::Kind::AMBIGUOUS, m_entry.firstLine,
           "can be read in two ways: its " + m_format->fieldNames[i] + " is " +
               Printable(reading.fields[i]) + " or " + Printable(reading.otherFields[i]) +
               "; the first was taken");
}

}  // namespace tallyquist
