// PageLogFormat strings and the columns they stand for.
// External interface: ParsePageLogFormat, Quoted, LayOut, the formats known by themselves.
#include "host/input/PageLogFormat.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/common/Printable.h"

namespace tallyquist {
namespace {

constexpr std::string_view KEYWORD = "PageLogFormat";

struct NamedField {
    std::string_view name;
    FieldKind kind;
    std::string_view column;
};

constexpr std::array<NamedField, 6> LETTERS = {{
    {"p", FieldKind::PRINTER, "printer"},
    {"u", FieldKind::USER, "user"},
    {"j", FieldKind::JOB, "job"},
    {"T", FieldKind::TIME, "completed"},
    {"P", FieldKind::PAGE, "page"},
    {"C", FieldKind::COUNT, "copies"},
}};

// Attributes with a column name of their own, then those whose values are numbers or keywords.
// An attribute that is not here may hold any text.
constexpr std::array<NamedField, 30> ATTRIBUTES = {{
    {"job-billing", FieldKind::BILLING, "billing"},
    {"job-originating-host-name", FieldKind::HOST, "host"},
    {"job-name", FieldKind::NAME, "name"},
    {"media", FieldKind::MEDIA, "media"},
    {"sides", FieldKind::SIDES, "sides"},
    {"time-at-creation", FieldKind::EPOCH, "created"},
    {"time-at-processing", FieldKind::EPOCH, "processing"},
    {"time-at-completed", FieldKind::EPOCH, "time-at-completed"},
    {"copies", FieldKind::WORD, "copies"},
    {"document-format", FieldKind::WORD, "document-format"},
    {"finishings", FieldKind::WORD, "finishings"},
    {"job-hold-until", FieldKind::WORD, "job-hold-until"},
    {"job-id", FieldKind::WORD, "job-id"},
    {"job-impressions", FieldKind::WORD, "job-impressions"},
    {"job-impressions-completed", FieldKind::WORD, "job-impressions-completed"},
    {"job-k-octets", FieldKind::WORD, "job-k-octets"},
    {"job-media-sheets", FieldKind::WORD, "job-media-sheets"},
    {"job-media-sheets-completed", FieldKind::WORD, "job-media-sheets-completed"},
    {"job-priority", FieldKind::WORD, "job-priority"},
    {"job-sheets", FieldKind::WORD, "job-sheets"},
    {"job-state", FieldKind::WORD, "job-state"},
    {"job-state-reasons", FieldKind::WORD, "job-state-reasons"},
    {"job-uuid", FieldKind::WORD, "job-uuid"},
    {"media-type", FieldKind::WORD, "media-type"},
    {"number-up", FieldKind::WORD, "number-up"},
    {"orientation-requested", FieldKind::WORD, "orientation-requested"},
    {"page-ranges", FieldKind::WORD, "page-ranges"},
    {"print-color-mode", FieldKind::WORD, "print-color-mode"},
    {"print-quality", FieldKind::WORD, "print-quality"},
    {"printer-resolution", FieldKind::WORD, "printer-resolution"},
}};

class FormatParser {
public:
    explicit FormatParser(std::string_view text) : m_text(text) {}

    PageLogFormat Parse() {
        // Names of attributes become names of columns, which messages of one line show.
        if (m_text.find_first_of(std::string_view("\n\r\0", 3)) != std::string_view::npos) {
            Fail("holds a line break or NUL");
        }
        while (m_at < m_text.size()) {
            if (m_text[m_at] != '%') {
                AddLiteral(m_text[m_at++]);
            } else {
                ++m_at;
                Escape();
            }
        }
        Check();
        return std::move(m_format);
    }

private:
    [[noreturn]] void Fail(const std::string& reason) const {
        throw OptionError("the log format '" + Visible(m_text) + "' " + Visible(reason));
    }

    void AddLiteral(char c) {
        if (m_format.parts.empty() || m_format.parts.back().IsField()) {
            m_format.parts.emplace_back();
        }
        m_format.parts.back().literal += c;
    }

    void AddField(FieldKind kind, std::string_view column) {
        if (!m_format.parts.empty() && m_format.parts.back().IsField()) {
            Fail("has no text between two fields, so they cannot be told apart");
        }
        if ((kind == FieldKind::PAGE || kind == FieldKind::COUNT) && m_format.PartOf(kind)) {
            Fail("has the page count twice");
        }
        m_format.parts.push_back({.literal = {}, .kind = kind, .column = std::string(column)});
    }

    void Escape() {
        if (m_at == m_text.size()) {
            Fail("ends with a single %");
        }
        const std::string_view letter = m_text.substr(m_at, 1);
        if (letter == "%") {
            ++m_at;
            AddLiteral('%');
            return;
        }
        if (letter == "{") {
            Attribute();
            return;
        }
        const auto* field = std::ranges::find(LETTERS, letter, &NamedField::name);
        if (field == LETTERS.end()) {
            Fail("has the unknown field %" + std::string(letter) +
                 "; known are %p %u %j %T %P %C %{attribute} and %%");
        }
        ++m_at;
        AddField(field->kind, field->column);
    }

    void Attribute() {
        const size_t close = m_text.find('}', m_at);
        if (close == std::string_view::npos) {
            Fail("has a %{ without its }");
        }
        const std::string_view name = m_text.substr(m_at + 1, close - m_at - 1);
        if (name.empty()) {
            Fail("has a %{} without an attribute name");
        }
        m_at = close + 1;
        const auto* known = std::ranges::find(ATTRIBUTES, name, &NamedField::name);
        if (known == ATTRIBUTES.end()) {
            AddField(FieldKind::TEXT, name);
        } else {
            AddField(known->kind, known->column);
        }
    }

    void Check() const {
        if (!m_format.PartOf(FieldKind::JOB)) {
            Fail("has no job number (%j)");
        }
    }

    std::string_view m_text;
    size_t m_at = 0;
    PageLogFormat m_format;
};

// Two columns of one name could not be told apart in the table.
std::string UniqueName(const std::string& name, const std::vector<Column>& taken) {
    std::string unique = name;
    for (int number = 2; std::ranges::find(taken, unique, &Column::name) != taken.end(); ++number) {
        unique = name + std::to_string(number);
    }
    return unique;
}

}  // namespace

constexpr std::string_view USUAL_LOG_FORMAT =
    "%p %u %j %T %P %C %{job-billing} %{job-originating-host-name} %{job-name} %{media} %{sides}";
constexpr std::string_view SEPARATED_LOG_FORMAT =
    "%j|%T|%p|%u|%P|%C|copies=%{copies}|imp=%{job-impressions-completed}|"
    "sheets=%{job-media-sheets-completed}|kb=%{job-k-octets}|mode=%{print-color-mode}|"
    "type=%{media-type}|created=%{time-at-creation}|processing=%{time-at-processing}|"
    "fmt=%{document-format}|state=%{job-state}|uuid=%{job-uuid}|pages=%{page-ranges}|"
    "nup=%{number-up}|%{media}|%{sides}|%{job-billing}|%{job-originating-host-name}|%{job-name}";
constexpr std::string_view OLDEST_LOG_FORMAT =
    "%p %u %j %T %P %C %{job-billing} %{job-originating-host-name}";

std::optional<size_t> PageLogFormat::PartOf(FieldKind kind) const {
    for (size_t i = 0; i < parts.size(); ++i) {
        if (parts[i].IsField() && parts[i].kind == kind) {
            return i;
        }
    }
    return std::nullopt;
}

std::optional<size_t> PageLogFormat::FieldOf(FieldKind kind) const {
    size_t field = 0;
    for (const FormatPart& part : parts) {
        if (part.IsField()) {
            if (part.kind == kind) {
                return field;
            }
            ++field;
        }
    }
    return std::nullopt;
}

size_t PageLogFormat::FieldCount() const {
    return static_cast<size_t>(std::ranges::count_if(parts, &FormatPart::IsField));
}

PageLogFormat ParsePageLogFormat(std::string_view text) {
    constexpr std::string_view BLANKS = " \t";
    std::string_view rest = text.substr(std::min(text.find_first_not_of(BLANKS), text.size()));
    if (rest.starts_with(KEYWORD)) {
        rest.remove_prefix(KEYWORD.size());
        const size_t blanks = std::min(rest.find_first_not_of(BLANKS), rest.size());
        text = blanks > 0 ? rest.substr(blanks) : text;
    }
    return FormatParser(text).Parse();
}

PageLogFormat Quoted(PageLogFormat format) {
    std::vector<FormatPart>& parts = format.parts;
    if (parts.front().IsField()) {
        parts.insert(parts.begin(), FormatPart{});
    }
    parts.front().literal.insert(0, 1, '"');
    if (parts.back().IsField()) {
        parts.emplace_back();
    }
    parts.back().literal += '"';
    return format;
}

RecordLayout LayOut(const PageLogFormat& format, bool perPage) {
    RecordLayout layout;
    std::optional<size_t> pages;
    for (const FormatPart& part : format.parts) {
        if (!part.IsField()) {
            continue;
        }
        const bool count = part.kind == FieldKind::PAGE || part.kind == FieldKind::COUNT;
        if (count && !perPage && pages) {
            layout.columnOf.push_back(*pages);
            continue;
        }
        layout.columnOf.push_back(layout.columns.size());
        if (count && !perPage) {
            pages = layout.columns.size();
        }
        const bool time = part.kind == FieldKind::TIME || part.kind == FieldKind::EPOCH;
        layout.columns.push_back(
            {.name = UniqueName(count && !perPage ? "pages" : part.column, layout.columns),
             .type = time ? ColumnType::DATE_TIME : ColumnType::TEXT});
    }
    layout.pagesColumn = pages;
    return layout;
}

}  // namespace tallyquist
