// Tells what kind of input a file is. External interface: InputRecognizer.
#include "host/input/InputRecognition.h"

#include <algorithm>
#include <array>

#include "compatible/Ascii.h"
#include "host/common/Printable.h"
#include "host/input/DelimitedReader.h"
#include "host/input/LogTime.h"
#include "host/input/PageLogReader.h"

namespace tallyquist {
namespace {

struct Signature {
    std::string_view bytes;
    std::string_view name;
};

constexpr std::array<Signature, 5> SIGNATURES = {{{"BZh", "a bzip2 file"},
                                                  {"\xFD"
                                                   "7zXZ",
                                                   "an xz file"},
                                                  {"\x28\xB5\x2F\xFD", "a zstd file"},
                                                  {"PK\x03\x04", "a zip file"},
                                                  {"%PDF-", "a PDF file"}}};

// The separator that the end of a file name stands for; NUL when it is not that of a table.
char SeparatorOfName(const std::string& name) {
    std::string lower(name);
    std::ranges::transform(lower, lower.begin(), AsciiLower);
    if (lower.ends_with(".gz")) {
        lower.resize(lower.size() - 3);
    }
    if (lower.ends_with(".tsv") || lower.ends_with(".tab")) {
        return '\t';
    }
    return lower.ends_with(".csv") ? ',' : '\0';
}

// The formats that end alike differ in where the texts typed by people may reach. A record that
// only fits by taking words of such a text for the billing code is no evidence for a format.
bool IsEvidence(const PageLogMatcher& matcher, const Reading& reading) {
    const std::optional<size_t> billing = matcher.Format().FieldOf(FieldKind::BILLING);
    return reading.certain || !billing ||
           reading.fields[*billing].find_first_of(" \n") == std::string_view::npos;
}

std::optional<int64_t> TimeOf(const PageLogMatcher& matcher, const Reading& reading) {
    const std::optional<size_t> time = matcher.Format().FieldOf(FieldKind::TIME);
    return time ? ParseLogTime(reading.fields[*time]) : std::nullopt;
}

// What the lines of an input say for or against a format.
struct Evidence {
    bool any = false;
    bool certain = false;
    bool contrary = false;
    std::optional<int64_t> firstTime;
};

// Reads on until the format and the first time are certain. Whatever fits a format that was given
// is evidence for it.
Evidence Weigh(const MatcherPair& candidate, const std::vector<std::string_view>& lines,
               bool given) {
    Evidence evidence;
    Reading reading;
    for (const std::string_view line : lines) {
        const PageLogMatcher& matcher = candidate.For(line);
        if (line.size() >= PageLogReader::MAX_RECORD || !matcher.Match(line, reading)) {
            continue;
        }
        if (!given && !IsEvidence(matcher, reading)) {
            evidence.contrary = true;
            continue;
        }
        evidence.any = true;
        evidence.certain = evidence.certain || given || reading.certain;
        evidence.firstTime = evidence.firstTime ? evidence.firstTime : TimeOf(matcher, reading);
        if (evidence.certain && evidence.firstTime) {
            break;
        }
    }
    return evidence;
}

// Reads the line at `at` together with those behind it that begin no record. The reading points
// into `text`.
bool MatchBroken(const PageLogMatcher& matcher, const std::vector<std::string_view>& lines,
                 size_t at, std::string& text, Reading& reading) {
    text = lines[at];
    while (++at < lines.size() && !matcher.StartsRecord(lines[at]) &&
           text.size() + 1 + lines[at].size() <= PageLogReader::MAX_RECORD) {
        text += '\n';
        text += lines[at];
        if (matcher.Match(text, reading)) {
            return true;
        }
    }
    return false;
}

// The names of columns, unlike the parts of a sentence, have no blanks around them.
bool LooksLikeHeader(const std::vector<Column>& columns) {
    constexpr std::string_view BLANKS = " \t";
    return columns.size() > 1 && std::ranges::none_of(columns, [&](const Column& column) {
               return column.name.empty() ||
                      BLANKS.find(column.name.front()) != std::string_view::npos ||
                      BLANKS.find(column.name.back()) != std::string_view::npos;
           });
}

std::vector<std::string_view> LinesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        line.remove_suffix(line.ends_with('\r') ? 1 : 0);
        if (line.find_first_not_of(" \t") != std::string_view::npos) {
            lines.push_back(line);
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

}  // namespace

// The complete lines at the beginning of an input.
struct InputRecognizer::Beginning {
    explicit Beginning(LineReader& reader)
        : name(reader.Name()), text(reader.Peek()), whole(reader.PeekedAll()) {
        if (!whole) {
            // A single line may fill it all.
            text = text.substr(0, text.rfind('\n') + 1);
        }
        lines = LinesOf(text);
    }

    const std::string& name;
    std::string_view text;
    bool whole;
    std::vector<std::string_view> lines;  // without blank ones
};

InputRecognizer::InputRecognizer(const InputOptions& options)
    : m_kind(options.kind),
      m_formatGiven(!options.logFormat.empty()),
      m_typesGiven(!options.columnTypes.empty()) {
    std::vector<std::string_view> formats = {USUAL_LOG_FORMAT, SEPARATED_LOG_FORMAT,
                                             OLDEST_LOG_FORMAT};
    if (m_formatGiven) {
        formats = {options.logFormat};
    }
    for (const std::string_view text : formats) {
        m_candidates.push_back(MakeMatchers(ParsePageLogFormat(text)));
    }
}

bool InputRecognizer::FindPageLog(const Beginning& beginning, Recognized& result) const {
    result.kind = Recognized::Kind::PAGE_LOG;
    for (const MatcherPair& candidate : m_candidates) {
        const Evidence evidence = Weigh(candidate, beginning.lines, m_formatGiven);
        if (evidence.certain || (evidence.any && !evidence.contrary)) {
            result.formats = {candidate};
            result.firstTime = evidence.firstTime;
            return true;
        }
    }
    return FindBrokenRecord(beginning, result);
}

// Perhaps all there is are records with a line break in the name, or cut ones. A short line that
// nothing completes is more likely one of a format that is not known.
bool InputRecognizer::FindBrokenRecord(const Beginning& beginning, Recognized& result) const {
    Reading reading;
    std::string text;
    for (const MatcherPair& candidate : m_candidates) {
        for (size_t i = 0; i < beginning.lines.size(); ++i) {
            const std::string_view line = beginning.lines[i];
            const PageLogMatcher& matcher = candidate.For(line);
            if (!matcher.StartsRecord(line)) {
                continue;
            }
            const bool found = line.size() >= PageLogReader::MAX_RECORD
                                   ? matcher.MatchCut(line, reading)
                                   : MatchBroken(matcher, beginning.lines, i, text, reading) &&
                                         (m_formatGiven || IsEvidence(matcher, reading));
            if (found) {
                result.formats = {candidate};
                result.firstTime = TimeOf(matcher, reading);
                return true;
            }
        }
    }
    return false;
}

// Adds the formats of lines that no format found so far can begin to explain.
void InputRecognizer::AddLaterFormats(const std::vector<std::string_view>& lines,
                                      Recognized& result) const {
    Reading reading;
    for (const std::string_view line : lines) {
        const auto begins = [&](const MatcherPair& format) {
            return format.For(line).StartsRecord(line);
        };
        if (std::ranges::any_of(result.formats, begins)) {
            continue;
        }
        const auto fits = [&](const MatcherPair& format) {
            return format.For(line).Match(line, reading) && IsEvidence(format.For(line), reading);
        };
        const auto found = std::ranges::find_if(m_candidates, fits);
        if (found != m_candidates.end()) {
            result.formats.push_back(*found);
        }
    }
}

bool InputRecognizer::FindTable(const Beginning& beginning, Recognized& result,
                                std::string& reason) const {
    const char byName = SeparatorOfName(beginning.name);
    const std::string_view header = beginning.lines.empty() ? "" : beginning.lines.front();
    result.kind = Recognized::Kind::TABLE;
    result.separator = SeparatorOf(header);
    if (m_kind == InputKind::TSV || (m_kind == InputKind::AUTOMATIC && byName == '\t')) {
        result.separator = '\t';
    } else if (m_kind == InputKind::CSV || byName == ',') {
        const bool semicolons = header.find(',') == std::string_view::npos &&
                                header.find(';') != std::string_view::npos;
        result.separator = semicolons ? ';' : ',';
    }
    if (m_kind == InputKind::CSV || m_kind == InputKind::TSV || byName != '\0' || m_typesGiven) {
        return true;
    }
    return GuessTable(beginning, result.separator, reason);
}

// Sets the reason when only the rows below what looks like a header make it no table.
bool InputRecognizer::GuessTable(const Beginning& beginning, char separator,
                                 std::string& reason) const {
    bool header = false;
    try {
        DelimitedReader table(
            std::make_unique<LineReader>(beginning.name, std::string(beginning.text)), separator,
            {});
        header = LooksLikeHeader(table.Columns());
        if (!beginning.whole) {
            table.AllowOpenEnd();
        }
        Record record;
        size_t rows = 0;
        while (header && table.Next(record)) {
            ++rows;
        }
        return rows > 0;
    } catch (const InputError& error) {
        // The name of the input begins the message already.
        reason = header ? "line " + std::string(error.what()).substr(beginning.name.size() + 1)
                        : std::string();
        return false;
    }
}

void InputRecognizer::Refuse(const Beginning& beginning, const std::string& tableReason) const {
    std::string reason = "not a job log: ";
    const auto* signature = std::ranges::find_if(SIGNATURES, [&](const Signature& known) {
        return beginning.text.starts_with(known.bytes);
    });
    if (signature != SIGNATURES.end()) {
        reason += "it is " + std::string(signature->name);
    } else if (beginning.text.find('\0') != std::string_view::npos) {
        reason += "it holds binary data";
    } else if (beginning.lines.empty()) {
        reason += "it begins with a line that is too long";
    } else {
        reason += m_formatGiven ? "no line fits the log format that was given"
                                : "no line reads as a record of a page log";
        if (m_kind == InputKind::AUTOMATIC && !m_formatGiven) {
            reason += ", and the lines are no table with a header";
            reason += tableReason.empty() ? "" : " (" + tableReason + ")";
        }
        reason += "; the first line is " + Printable(beginning.lines.front());
        const auto hasTime = [](std::string_view line) { return FindLogTime(line).has_value(); };
        if (!m_formatGiven && std::ranges::any_of(beginning.lines, hasTime)) {
            reason += "; --log-format takes the format of another log";
        }
    }
    throw InputError(beginning.name + ": " + reason);
}

Recognized InputRecognizer::Recognize(LineReader& lines,
                                      const std::function<std::string()>& tail) const {
    const Beginning beginning(lines);
    Recognized result;
    if (beginning.whole && beginning.lines.empty() &&
        (m_kind == InputKind::AUTOMATIC || m_kind == InputKind::PAGE_LOG)) {
        return result;
    }
    const bool pageLogOnly = m_kind == InputKind::PAGE_LOG || m_formatGiven;
    if (m_kind == InputKind::PAGE_LOG || m_kind == InputKind::AUTOMATIC) {
        if (FindPageLog(beginning, result)) {
            AddLaterFormats(beginning.lines, result);
            if (!m_formatGiven && !beginning.whole) {
                const std::string end = tail();
                AddLaterFormats(LinesOf(end), result);
            }
            return result;
        }
    }
    if (pageLogOnly && m_kind != InputKind::CSV && m_kind != InputKind::TSV) {
        Refuse(beginning, "");
    }
    std::string reason;
    if (!FindTable(beginning, result, reason)) {
        Refuse(beginning, reason);
    }
    return result;
}

}  // namespace tallyquist
